#include "files/cabinet/Manifest.h"

#include <vector>

namespace qv::cabinet {
namespace {

constexpr std::string_view kList = "MANIFEST", kItem = "ITEM";

struct Escape {
    std::string_view character, text;
};
// In the order of writing; reading goes the other way.
constexpr Escape kEscapes[] = {{"&", "&amp;"}, {"<", "&lt;"}, {">", "&gt;"}, {"\n", "&#10;"}, {"\r", "&#13;"}};

CString Escaped(CString text) {
    for (const Escape& escape : kEscapes) text.Replace(escape.character, escape.text);
    return text;
}

CString Unescaped(CString text) {
    for (auto escape = std::rbegin(kEscapes); escape != std::rend(kEscapes); ++escape)
        text.Replace(escape->text, escape->character);
    return text;
}

/// Sections within sections, each closed by its own name: all there is to the format.
class Reader {
public:
    explicit Reader(std::string_view text) : m_rest(text) {}

    bool Read(CStringArray& entries) {
        CString item;
        for (;;) {
            const std::size_t open = m_rest.find('<');
            const std::string_view characters = m_rest.substr(0, open);
            if (characters.find('>') != characters.npos) return false;
            if (IsInItem()) item += characters;
            if (open == m_rest.npos) return m_tags.empty();
            m_rest.remove_prefix(open + 1);
            const std::size_t close = m_rest.find('>');
            if (close == m_rest.npos) return false;
            const std::string_view tag = m_rest.substr(0, close);
            m_rest.remove_prefix(close + 1);
            if (!tag.starts_with('/')) {
                m_tags.push_back(tag);
                if (IsInItem()) item.Empty();
                continue;
            }
            if (m_tags.empty() || m_tags.back() != tag.substr(1)) return false;
            if (IsInItem()) entries.Add(Unescaped(std::move(item)));
            m_tags.pop_back();
        }
    }

private:
    bool IsInItem() const { return m_tags.size() == 2 && m_tags[0] == kList && m_tags[1] == kItem; }

    std::string_view m_rest;
    std::vector<std::string_view> m_tags;
};

}  // namespace

CString ManifestText(const CStringArray& entries) {
    CString text;
    if (entries.IsEmpty()) return text;
    text += "<MANIFEST>\n";
    for (const CString& entry : entries)
        if (!entry.IsEmpty()) ((text += "    <ITEM>") += Escaped(entry)) += "</ITEM>\n";
    text += "</MANIFEST>\n";
    return text;
}

std::optional<CStringArray> ReadManifest(std::string_view text) {
    CStringArray entries;
    if (!Reader(text).Read(entries)) return std::nullopt;
    return entries;
}

}  // namespace qv::cabinet
