#include "core/CaseRule.h"

#include <algorithm>

#include "platform/Ascii.h"

namespace qv {

using platform::Case;
using platform::CodePage;

namespace {

bool AreEqualIgnoringCase(std::string_view a, std::string_view b);

// ASCII texts without an I, whose case is language-specific, can be compared without the locale.
bool AreEqualFromStart(std::string_view a, std::string_view b) {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const char x = ascii::ToLower(a[i]), y = ascii::ToLower(b[i]);
        if (!ascii::IsAscii(x) || !ascii::IsAscii(y)) return AreEqualIgnoringCase(a.substr(i), b.substr(i));
        if (a[i] == b[i]) continue;
        if (x == 'i' || y == 'i') return AreEqualIgnoringCase(a.substr(i), b.substr(i));
        if (x != y) return false;
    }
    return a.size() == b.size();
}

bool AreEqualIgnoringCase(std::string_view a, std::string_view b) {
    const platform::ByteCase bytes = platform::CaseOfBytes(Case::Lower);
    const bool byBytes = platform::CurrentCodePage() == CodePage::SingleByte;
    if (byBytes && a.size() != b.size()) return false;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        const auto x = static_cast<unsigned char>(a[i]), y = static_cast<unsigned char>(b[i]);
        const bool plain = byBytes || (bytes.complete && (x | y) < 0x80);
        if (!plain) return platform::ToLower(a.substr(i)) == platform::ToLower(b.substr(i));
        if (bytes.map[x] != bytes.map[y]) return false;
    }
    return a.size() == b.size();
}

constexpr platform::ByteCase kNoCase = [] {
    platform::ByteCase bytes{.map = {}, .complete = true};
    for (unsigned i = 0; i < 256; ++i) bytes.map[i] = static_cast<unsigned char>(i);
    return bytes;
}();

}  // namespace

bool AreEqual(std::string_view a, std::string_view b, CaseRule rule) {
    return a == b || (rule == CaseRule::Ignore && AreEqualFromStart(a, b));
}

CaseReader::CaseReader(CaseRule rule)
    : m_page(rule == CaseRule::Exact ? CodePage::SingleByte : platform::CurrentCodePage()),
      m_bytes(rule == CaseRule::Exact ? kNoCase : platform::CaseOfBytes(Case::Upper)),
      m_byBytes(m_page == CodePage::SingleByte) {}

platform::CasedCharacter CaseReader::Read(std::string_view text, std::size_t position) const {
    const auto byte = static_cast<unsigned char>(text[position]);
    if (m_byBytes || (byte < 0x80 && m_bytes.complete)) return {m_bytes.map[byte], 1};
    return platform::ReadCased(text, position, m_page, Case::Upper);
}

std::vector<char32_t> CaseReader::ReadAll(std::string_view text) const {
    std::vector<char32_t> codes;
    codes.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const platform::CasedCharacter c = Read(text, i);
        codes.push_back(c.code);
        i += c.length;
    }
    return codes;
}

}  // namespace qv
