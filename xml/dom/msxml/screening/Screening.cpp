#include "xml/dom/Screening.h"

#include <algorithm>

#include "platform/Text.h"
#include "platform/Utf8.h"
#include "xml/dom/Characters.h"

namespace qv::dom {
namespace {

using MSXML2::IXMLDOMParseError;

constexpr auto kRefused = static_cast<HRESULT>(0xC00CE000);  // the facility of XML, and a code that nobody else uses

IXMLDOMParseError ProblemAt(std::string_view text, std::size_t position, const char* reason) {
    const std::string_view before = text.substr(0, position);
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    const std::size_t start = before.rfind('\n') + 1;  // npos + 1 is 0
    return {kRefused, reason, static_cast<long>(line), static_cast<long>(position - start + 1)};
}

// The first byte that is no character; only UTF-8 has such.
std::size_t FindBroken(std::string_view text) {
    if (platform::CurrentCodePage() != platform::CodePage::Utf8) return text.npos;
    for (std::size_t i = 0; i < text.size();) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const platform::Utf8Character c =
            byte < 0x80 ? platform::Utf8Character{byte, 1, true} : platform::DecodeUtf8(text, i);
        if (!c.wellFormed) return i;
        i += c.length;
    }
    return text.npos;
}

// Walks from one piece of markup to the next.
class Scanner {
public:
    explicit Scanner(std::string_view text) : m_text(text) {}

    IXMLDOMParseError Run() {
        while ((m_at = m_text.find('<', m_at)) != m_text.npos) {
            const std::size_t start = m_at;
            if (const char* const reason = Markup()) return ProblemAt(m_text, start, reason);
        }
        return {};
    }

private:
    const char* Markup() {
        const std::string_view rest = m_text.substr(m_at);
        if (rest.starts_with("<!--")) return SkipTo("-->", 4);
        if (rest.starts_with("<![CDATA[")) return SkipTo("]]>", 9);
        if (rest.starts_with("<?")) return SkipTo("?>", 2);
        if (rest.starts_with("<!")) return Declaration();
        if (rest.starts_with("</")) {
            --m_depth;
            return SkipTo(">", 2);
        }
        return Tag();
    }

    const char* SkipTo(std::string_view end, std::size_t from) {
        const std::size_t hit = m_text.find(end, m_at + from);
        m_at = hit == m_text.npos ? m_text.size() : hit + end.size();
        return nullptr;
    }

    // To the next of a few bytes outside quotes.
    char SkipToUnquoted(std::string_view ends) {
        for (char quote = 0; ++m_at < m_text.size();) {
            const char c = m_text[m_at];
            if (quote ? c == quote : c == '"' || c == '\'')
                quote = quote ? '\0' : c;
            else if (!quote && ends.find(c) != ends.npos)
                return c;
        }
        return 0;
    }

    const char* Declaration() {
        return SkipToUnquoted(">[") == '[' ? "A document type declaration must not have an internal subset" : nullptr;
    }

    const char* Tag() {
        if (SkipToUnquoted(">") && m_text[m_at - 1] == '/') return nullptr;
        return ++m_depth > kMaxDepth ? "Elements are nested too deeply" : nullptr;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    int m_depth = 0;
};

bool IsNamePart(std::string_view part) {
    return !part.empty() && StartsName(part[0]) && std::all_of(part.begin(), part.end(), ContinuesName);
}

}  // namespace

IXMLDOMParseError Screen(std::string_view text) {
    if (const std::size_t zero = text.find('\0'); zero != text.npos)
        return ProblemAt(text, zero, "A zero byte is no character of XML");
    if (const std::size_t broken = FindBroken(text); broken != text.npos)
        return ProblemAt(text, broken, "A byte is no part of a character");
    return Scanner(text).Run();
}

// In encodings of two or four bytes a character, every ASCII character stands between zero bytes.
IXMLDOMParseError ScreenBytes(std::string_view bytes) {
    if (bytes.find('\0') == bytes.npos) return Scanner(bytes).Run();
    std::string text;
    text.reserve(bytes.size() / 2);
    std::copy_if(bytes.begin(), bytes.end(), std::back_inserter(text), [](char c) { return c != 0; });
    return Scanner(text).Run();
}

bool IsName(std::string_view name) {
    const std::size_t colon = name.find(':');
    if (colon != name.npos && !IsNamePart(name.substr(0, colon))) return false;
    return IsNamePart(name.substr(colon == name.npos ? 0 : colon + 1)) && FindBroken(name) == name.npos;
}

bool CanBeHeld(std::string_view text) {
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 && !IsSpace(c); };
    return std::none_of(text.begin(), text.end(), isControl) && FindBroken(text) == text.npos;
}

}  // namespace qv::dom
