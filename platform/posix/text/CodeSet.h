#pragma once

/// @file The character sets supported by iconv, by the system's names.

#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Text.h"

namespace qv::platform {

class CodeSet {
public:
    /// Returns the set of that name, valid for the lifetime of the process; null if the system does not know it.
    /// Thread-safe.
    static const CodeSet* Named(std::string_view name);
    static const CodeSet& Utf8();

    std::string_view Name() const { return m_name; }
    CodePage Page() const { return m_page; }
    /// Returns false for sets that encode ASCII differently, such as EBCDIC.
    bool HoldsAscii() const;

    struct Character {
        char32_t code;  ///< the byte's own value if it is not part of a well-formed character
        std::size_t length;
        bool wellFormed;
    };
    /// Decodes the character at `position`, which must be within the text.
    Character Read(std::string_view text, std::size_t position) const;

    /// Returns false, appending nothing, for a character that the set lacks.
    bool Append(std::string& out, char32_t code) const;

private:
    explicit CodeSet(std::string_view name);

    bool ReadBytes();
    Character ReadLong(std::string_view text, std::size_t position) const;
    bool AppendLong(std::string& out, char32_t code) const;

    // Special codes: bytes that only begin a character, and bytes that cannot begin one.
    static constexpr char32_t kLead = 0x110000, kNone = 0x110001;

    std::string m_name;
    CodePage m_page = CodePage::SingleByte;
    std::array<char32_t, 256> m_codes{};
    std::vector<std::pair<char32_t, char>> m_bytes;  // of the codes from 0x80 on, sorted
};

}  // namespace qv::platform
