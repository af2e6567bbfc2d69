#include "platform/IniText.h"

#include <algorithm>
#include <set>

#include "platform/PercentCode.h"

namespace qv::platform {
namespace {

using ascii::IsControl;

std::string_view Trimmed(std::string_view text) {
    return ascii::Trimmed(text, [](char c) { return ascii::IsBlank(c) || c == '\r'; });
}

// Only upper-case digits are an escape, because only those are written.
std::optional<char> HexAt(std::string_view text, std::size_t position) {
    const auto byte = HexByteAt(text, position);
    if (!byte || ascii::IsLower(text[position]) || ascii::IsLower(text[position + 1])) return std::nullopt;
    return byte;
}

std::string EncodeName(std::string_view name) {
    std::string out;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const bool atEnd = i == 0 || i + 1 == name.size();
        const bool plain = !IsControl(name[i]) && std::string_view("%=[];#").find(name[i]) == std::string_view::npos;
        if (plain && !(atEnd && name[i] == ' '))
            out += name[i];
        else
            AppendPercent(out, name[i]);
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
            out += {'\\', c};
        else if (IsControl(c))
            AppendHex(out += "\\x", c);
        else
            out += c;
    }
    return out += '"';
}

std::string DecodeValue(std::string_view value) {
    if (value.size() < 2 || value.front() != '"' || value.back() != '"') return std::string(value);
    value = value.substr(1, value.size() - 2);
    std::string out;
    while (!value.empty()) {
        std::size_t length = 1;
        if (value.starts_with("\\\\") || value.starts_with("\\\"")) {
            out += value[1];
            length = 2;
        } else if (const auto byte = value.starts_with("\\x") ? HexAt(value, 2) : std::nullopt) {
            out += *byte;
            length = 4;
        } else {
            out += value[0];
        }
        value.remove_prefix(length);
    }
    return out;
}

/// Iterates over the lines and classifies them.
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
    /// Whether the line belongs to a section of the name, including its header; and whether to the first such section.
    bool inNamed = false, inSection = false;
    bool isBlank = false;
    std::string_view header;       ///< the name between the brackets, or null
    std::string_view name, value;  ///< of an entry; otherwise the name is null

private:
    void Read(std::string_view line) {
        header = name = value = {};
        isBlank = line.empty();
        if (line.starts_with('[')) {
            header = Trimmed(line.substr(1, line.find(']') - 1));
            inNamed = ascii::EqualsIgnoreCase(DecodeName(header), m_section);
            inSection = inNamed && !m_found;
            m_found |= inNamed;
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
    return line.inSection && line.name.data() && ascii::EqualsIgnoreCase(DecodeName(line.name), entry);
}

template <class Unwanted>
std::string WithoutLines(std::string_view text, std::string_view section, Unwanted unwanted) {
    std::string out;
    for (IniLines line(text, section); line.Next();)
        if (!unwanted(line)) out += text.substr(line.begin, line.End() - line.begin);
    return out;
}

/// Collects names, ignoring the case of their letters.
class DistinctNames {
public:
    void Add(std::string name) {
        if (m_folded.insert(ascii::ToLower(name)).second) names.push_back(std::move(name));
    }

    std::vector<std::string> names;

private:
    std::set<std::string> m_folded;
};

bool BeginsWith(std::string_view text, std::string_view prefix) {
    return ascii::EqualsIgnoreCase(text.substr(0, prefix.size()), prefix);
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

std::string WithoutIniValue(std::string_view text, std::string_view section, std::string_view entry) {
    return WithoutLines(text, section, [entry](const IniLines& line) { return IsEntry(line, entry); });
}

std::string WithoutIniSection(std::string_view text, std::string_view section) {
    return WithoutLines(text, section, [](const IniLines& line) { return line.inNamed; });
}

std::string WithoutIniSections(std::string_view text, std::string_view prefix) {
    bool within = false;
    return WithoutLines(text, {}, [&](const IniLines& line) {
        if (line.header.data()) within = BeginsWith(DecodeName(line.header), prefix);
        return within;
    });
}

std::vector<std::string> IniSections(std::string_view text) {
    DistinctNames found;
    for (IniLines line(text, {}); line.Next();)
        if (line.header.data()) found.Add(DecodeName(line.header));
    return std::move(found.names);
}

std::vector<std::string> IniEntries(std::string_view text, std::string_view section) {
    DistinctNames found;
    for (IniLines line(text, section); line.Next();)
        if (line.inSection && line.name.data()) found.Add(DecodeName(line.name));
    return std::move(found.names);
}

}  // namespace qv::platform
