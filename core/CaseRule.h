#pragma once

/// @file Case-sensitive and case-insensitive comparison of texts.

#include <string_view>
#include <vector>

#include "platform/Text.h"

namespace qv {

enum class CaseRule { Exact, Ignore };

inline CaseRule CaseRuleFor(bool ignoreCase) {
    return ignoreCase ? CaseRule::Ignore : CaseRule::Exact;
}

/// Compares byte by byte, or in lower case.
bool AreEqual(std::string_view a, std::string_view b, CaseRule rule);

/// Reads a text as numbers that are equal if the rule treats the characters as equal in upper case; as bytes if the
/// rule is case-sensitive.
class CaseReader {
public:
    explicit CaseReader(CaseRule rule);

    platform::CasedCharacter Read(std::string_view text, std::size_t position) const;
    std::vector<char32_t> ReadAll(std::string_view text) const;

    /// Returns whether every byte is a character, and Read returns its entry of Bytes().
    bool IsByBytes() const { return m_byBytes; }
    platform::CodePage Page() const { return m_page; }
    const platform::ByteCase& Bytes() const { return m_bytes; }

private:
    platform::CodePage m_page = platform::CodePage::SingleByte;
    platform::ByteCase m_bytes;
    bool m_byBytes;
};

}  // namespace qv
