#pragma once

/// @file The character sets that bytes are read in: what iconv knows, by the system's names.

#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Text.h"

namespace qv::platform {

class CodeSet {
public:
    /// The set of that name, which lives as long as the process; null for one that the system does not know.
    /// Any thread.
    static const CodeSet* Named(std::string_view name);
    static const CodeSet& Utf8();

    std::string_view Name() const { return m_name; }
    CodePage Page() const { return m_page; }
    /// False for sets that write ASCII otherwise, such as EBCDIC.
    bool HoldsAscii() const;

    struct Character {
        char32_t code;  ///< the byte's own value where it is no part of a well-formed character
        std::size_t length;
        bool wellFormed;
    };
    /// The character at `position`, which must lie in the text.
    Character Read(std::string_view text, std::size_t position) const;

    /// False, and nothing appended, for a character that the set lacks.
    bool Append(std::string& out, char32_t code) const;

private:
    explicit CodeSet(std::string_view name);

    bool ReadBytes();
    Character ReadLong(std::string_view text, std::size_t position) const;
    bool AppendLong(std::string& out, char32_t code) const;

    // In place of a code: bytes that only begin a character, and bytes that begin none.
    static constexpr char32_t kLead = 0x110000, kNone = 0x110001;

    std::string m_name;
    CodePage m_page = CodePage::SingleByte;
    std::array<char32_t, 256> m_codes{};
    std::vector<std::pair<char32_t, char>> m_bytes;  // of the codes from 0x80 on, sorted
};

}  // namespace qv::platform
