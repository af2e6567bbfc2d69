#include "platform/IniText.h"

#include <algorithm>

namespace qv::platform {
namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

bool SameName(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return Lower(x) == Lower(y); });
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

bool IsControl(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

void AppendHex(std::string& out, char c) {
    const auto byte = static_cast<unsigned char>(c);
    out += kDigits[byte >> 4];
    out += kDigits[byte & 15];
}

// The byte that two hexadecimal digits at the position stand for.
std::optional<char> HexAt(std::string_view text, std::size_t position) {
    int value = 0;
    for (std::size_t i = position; i < position + 2; ++i) {
        const std::size_t digit = i < text.size() ? kDigits.find(text[i]) : kDigits.npos;
        if (digit == kDigits.npos) return std::nullopt;
        value = value * 16 + static_cast<int>(digit);
    }
    return static_cast<char>(value);
}

std::string EncodeName(std::string_view name) {
    std::string out;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const bool atEnd = i == 0 || i + 1 == name.size();
        const bool plain = !IsControl(name[i]) && std::string_view("%=[];#").find(name[i]) == std::string_view::npos;
        if (plain && !(atEnd && name[i] == ' '))
            out += name[i];
        else
            out += '%', AppendHex(out, name[i]);
    }
    return out;
}

std::string DecodeName(std::string_view name) {
    std::string out;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const auto byte = name[i] == '%' ? HexAt(name, i + 1) : std::nullopt;
        out += byte.value_or(name[i]);
        if (byte) i += 2;
    }
    return out;
}

std::string EncodeValue(std::string_view value) {
    const bool plain =
        Trimmed(value) == value && !value.starts_with('"') && std::none_of(value.begin(), value.end(), IsControl);
    if (plain) return std::string(value);
    std::string out = "\"";
    for (const char c : value) {
        if (c == '\\' || c == '"')
            out += '\\', out += c;
        else if (IsControl(c))
            out += "\\x", AppendHex(out, c);
        else
            out += c;
    }
    return out += '"';
}

std::string DecodeValue(std::string_view value) {
    if (value.size() < 2 || value.front() != '"' || value.back() != '"') return std::string(value);
    value = value.substr(1, value.size() - 2);
    std::string out;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const std::string_view rest = value.substr(i);
        if (rest.starts_with("\\\\") || rest.starts_with("\\\""))
            out += rest[1], ++i;
        else if (const auto byte = rest.starts_with("\\x") ? HexAt(rest, 2) : std::nullopt)
            out += *byte, i += 3;
        else
            out += rest[0];
    }
    return out;
}

/// Walks through the lines and tells what each is.
class IniLines {
public:
    IniLines(std::string_view text, std::string_view section) : m_text(text), m_section(section) {}

    bool Next() {
        if (m_end >= m_text.size()) return false;
        begin = m_end;
        m_end = std::min(m_text.find('\n', begin), m_text.size() - 1) + 1;
        const std::string_view line = Trimmed(m_text.substr(begin, m_end - begin - (m_text[m_end - 1] == '\n')));
        Read(line);
        return true;
    }

    std::size_t begin = 0;
    std::size_t End() const { return m_end; }
    /// Whether the line stands in the section, the first of its name, or heads it.
    bool inSection = false;
    bool isBlank = false;
    std::string_view name, value;  ///< of an entry; else the name is empty

private:
    void Read(std::string_view line) {
        name = value = {};
        isBlank = line.empty();
        if (line.starts_with('[')) {
            const std::string_view section = Trimmed(line.substr(1, line.find(']') - 1));
            inSection = !m_found && SameName(DecodeName(section), m_section);
            m_found |= inSection;
        } else if (const std::size_t sign = line.find('='); sign != line.npos && line[0] != ';' && line[0] != '#') {
            name = Trimmed(line.substr(0, sign));
            value = Trimmed(line.substr(sign + 1));
        }
    }

    std::string_view m_text, m_section;
    std::size_t m_end = 0;
    bool m_found = false;
};

bool IsEntry(const IniLines& line, std::string_view entry) {
    return line.inSection && line.name.data() && SameName(DecodeName(line.name), entry);
}

}  // namespace

std::optional<std::string> FindIniValue(std::string_view text, std::string_view section, std::string_view entry) {
    for (IniLines line(text, section); line.Next();)
        if (IsEntry(line, entry)) return DecodeValue(line.value);
    return std::nullopt;
}

std::string WithIniValue(std::string_view text, std::string_view section, std::string_view entry,
                         std::string_view value) {
    const std::string assignment = EncodeName(entry) + '=' + EncodeValue(value) + '\n';
    std::size_t place = text.npos;
    for (IniLines line(text, section); line.Next();) {
        if (IsEntry(line, entry))
            return std::string(text.substr(0, line.begin)) + assignment + std::string(text.substr(line.End()));
        if (line.inSection && !line.isBlank) place = line.End();
    }
    std::string out(text.substr(0, place));
    if (!out.empty() && out.back() != '\n') out += '\n';
    if (place == text.npos) {
        if (!out.empty()) out += '\n';
        return out + '[' + EncodeName(section) + "]\n" + assignment;
    }
    return out + assignment + std::string(text.substr(place));
}

}  // namespace qv::platform
