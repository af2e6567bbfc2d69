#include "html/AddressParts.h"

#include <algorithm>

#include "platform/Hex.h"

namespace qv::html {
namespace {

struct NamedReference {
    std::string_view text;
    char code;
};

// Those that can change an address's kind; browsers require the semicolon for all of them.
constexpr NamedReference kNamedReferences[] = {{"&sol;", '/'},   {"&bsol;", '\\'},    {"&period;", '.'},
                                               {"&colon;", ':'}, {"&num;", '#'},      {"&quest;", '?'},
                                               {"&Tab;", '\t'},  {"&NewLine;", '\n'}, {"&plus;", '+'}};

char CodeOf(std::string_view digits, bool hex) {
    unsigned code = 0;
    for (const char c : digits) {
        const auto digit = static_cast<unsigned>(HexDigitValue(c));
        code = std::min(code * (hex ? 16 : 10) + digit, 0x80u);
    }
    return code == 0 ? ValueCharacter::kOther : static_cast<char>(code);
}

ValueCharacter ReadNumericReference(std::string_view text) {
    const bool hex = text.size() > 2 && ascii::ToLower(text[2]) == 'x';
    const std::size_t begin = hex ? 3 : 2;
    std::size_t end = begin;
    while (end < text.size() && (hex ? IsHexDigit(text[end]) : ascii::IsDigit(text[end]))) ++end;
    if (end == begin) return {'&', 1};
    const bool closed = end < text.size() && text[end] == ';';
    return {CodeOf(text.substr(begin, end - begin), hex), end + (closed ? 1 : 0)};
}

bool IsPassedOver(char c) {
    return c == '\t' || c == '\n' || c == '\r';
}

bool IsPassedOverAtEnds(char c) {
    return static_cast<unsigned char>(c) <= ' ';
}

bool IsSchemeCharacter(char c) {
    return ascii::IsLetterOrDigit(c) || c == '+' || c == '-' || c == '.';
}

// Iterates over the significant characters.
class Reader {
public:
    explicit Reader(std::string_view value) : m_value(value) { Settle(); }
    bool AtEnd() const { return m_position >= m_value.size(); }
    char Code() const { return AtEnd() ? '\0' : m_character.code; }
    void Next() {
        m_position += m_character.length;
        Settle();
    }

private:
    void Settle() {
        for (; !AtEnd(); m_position += m_character.length) {
            m_character = ReadValueCharacter(m_value, m_position);
            if (!IsPassedOver(m_character.code)) return;
        }
    }

    std::string_view m_value;
    std::size_t m_position = 0;
    ValueCharacter m_character;
};

bool HasScheme(Reader reader) {
    if (!ascii::IsLetter(reader.Code())) return false;
    while (!reader.AtEnd() && IsSchemeCharacter(reader.Code())) reader.Next();
    return reader.Code() == ':';
}

}  // namespace

bool IsSeparator(char c) {
    return c == '/' || c == '\\';
}

ValueCharacter ReadValueCharacter(std::string_view value, std::size_t position) {
    const char c = value[position];
    if (c != '&') return {ascii::IsAscii(c) ? c : ValueCharacter::kOther, 1};
    const std::string_view rest = value.substr(position);
    if (rest.starts_with("&#")) return ReadNumericReference(rest);
    for (const NamedReference& named : kNamedReferences)
        if (rest.starts_with(named.text)) return {named.code, named.text.size()};
    return {'&', 1};
}

TrimmedValue Trim(std::string_view value) {
    std::size_t begin = 0;
    while (begin < value.size()) {
        const ValueCharacter c = ReadValueCharacter(value, begin);
        if (!IsPassedOverAtEnds(c.code)) break;
        begin += c.length;
    }
    std::size_t end = begin;
    for (std::size_t i = begin; i < value.size();) {
        const ValueCharacter c = ReadValueCharacter(value, i);
        i += c.length;
        if (!IsPassedOverAtEnds(c.code)) end = i;
    }
    return {value.substr(0, begin), value.substr(begin, end - begin), value.substr(end)};
}

AddressKind Classify(std::string_view value) {
    Reader reader(Trim(value).address);
    if (reader.AtEnd()) return AddressKind::Empty;
    if (reader.Code() == '#') return AddressKind::Fragment;
    if (reader.Code() == '?') return AddressKind::Query;
    if (HasScheme(reader)) return AddressKind::Scheme;
    if (!IsSeparator(reader.Code())) return AddressKind::Path;
    reader.Next();
    return IsSeparator(reader.Code()) ? AddressKind::Host : AddressKind::Rooted;
}

Segment ReadSegment(std::string_view value, std::size_t position) {
    Segment segment;
    int dots = 0;
    bool plain = false;
    std::size_t end = position;
    while (end < value.size()) {
        const ValueCharacter c = ReadValueCharacter(value, end);
        if (IsSeparator(c.code)) segment.separator = c.length;
        if (IsSeparator(c.code) || c.code == '?' || c.code == '#') break;
        end += c.length;
        if (c.code == '.')
            ++dots;
        else if (!IsPassedOver(c.code))
            plain = true;
    }
    segment.text = value.substr(position, end - position);
    if (!plain && (dots == 1 || dots == 2)) segment.kind = dots == 1 ? Segment::Dot : Segment::DotDot;
    return segment;
}

}  // namespace qv::html
