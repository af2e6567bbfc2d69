#include "html/AddressParts.h"

#include <algorithm>

namespace qv::html {
namespace {

struct NamedReference {
    std::string_view text;
    char code;
};

// Those that can change what an address is; browsers want the semicolon for all of them.
constexpr NamedReference kNamedReferences[] = {{"&sol;", '/'},   {"&bsol;", '\\'},    {"&period;", '.'},
                                               {"&colon;", ':'}, {"&num;", '#'},      {"&quest;", '?'},
                                               {"&Tab;", '\t'},  {"&NewLine;", '\n'}, {"&plus;", '+'}};

constexpr std::string_view kDigits = "0123456789", kHexDigits = "0123456789abcdefABCDEF";

char CodeOf(std::string_view digits, bool hex) {
    unsigned code = 0;
    for (const char c : digits) {
        const unsigned digit = c <= '9' ? static_cast<unsigned>(c - '0') : static_cast<unsigned>((c | 0x20) - 'a') + 10;
        code = std::min(code * (hex ? 16 : 10) + digit, 0x80u);
    }
    return code == 0 ? ValueCharacter::kOther : static_cast<char>(code);
}

ValueCharacter ReadNumericReference(std::string_view text) {
    const bool hex = text.size() > 2 && (text[2] | 0x20) == 'x';
    const std::size_t begin = hex ? 3 : 2;
    const std::size_t end = std::min(text.find_first_not_of(hex ? kHexDigits : kDigits, begin), text.size());
    if (end <= begin) return {'&', 1};
    const bool closed = end < text.size() && text[end] == ';';
    return {CodeOf(text.substr(begin, end - begin), hex), end + (closed ? 1 : 0)};
}

bool IsPassedOver(char c) {
    return c == '\t' || c == '\n' || c == '\r';
}

bool IsBlank(char c) {
    return static_cast<unsigned char>(c) <= ' ';
}

bool IsLetter(char c) {
    return (c | 0x20) >= 'a' && (c | 0x20) <= 'z';
}

bool IsSchemeCharacter(char c) {
    return IsLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
}

// Walks over the characters that count.
class Reader {
public:
    explicit Reader(std::string_view value) : m_value(value) { Settle(); }
    bool AtEnd() const { return m_position >= m_value.size(); }
    char Code() const { return AtEnd() ? '\0' : m_character.code; }
    void Next() { m_position += m_character.length, Settle(); }

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
    if (!IsLetter(reader.Code())) return false;
    while (!reader.AtEnd() && IsSchemeCharacter(reader.Code())) reader.Next();
    return reader.Code() == ':';
}

}  // namespace

bool IsSeparator(char c) {
    return c == '/' || c == '\\';
}

ValueCharacter ReadValueCharacter(std::string_view value, std::size_t position) {
    const char c = value[position];
    if (c != '&') return {static_cast<unsigned char>(c) < 0x80 ? c : ValueCharacter::kOther, 1};
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
        if (!IsBlank(c.code)) break;
        begin += c.length;
    }
    std::size_t end = begin;
    for (std::size_t i = begin; i < value.size();) {
        const ValueCharacter c = ReadValueCharacter(value, i);
        i += c.length;
        if (!IsBlank(c.code)) end = i;
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
