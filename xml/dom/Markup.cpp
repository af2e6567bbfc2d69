#include "xml/dom/Markup.h"

#include <utility>

#include "core/KeyedHash.h"
#include "platform/Ascii.h"
#include "platform/Utf8.h"
#include "xml/dom/Backend.h"
#include "xml/dom/CodePage.h"
#include "xml/dom/Held.h"

namespace qv::dom {
namespace {

using namespace MSXML2;

void AppendEscaped(std::string& out, std::string_view text, bool attribute) {
    for (const char c : text) {
        switch (c) {
            case '&': out += "&amp;"; break;
            case '<': out += "&lt;"; break;
            case '>': out += "&gt;"; break;
            case '\r': out += "&#13;"; break;
            case '"': out += attribute ? "&quot;" : "\""; break;
            case '\n': out += attribute ? "&#10;" : "\n"; break;
            case '\t': out += attribute ? "&#9;" : "\t"; break;
            default: out += c;
        }
    }
}

// The same, with references for characters that the code page lacks.
void AppendReferenced(std::string& out, std::string_view text, bool attribute) {
    std::size_t from = 0;
    for (std::size_t i = 0; i < text.size();) {
        const platform::Utf8Character c = platform::DecodeUtf8(text, i);
        if (!ascii::IsAscii(text[i]) && !CodePageHolds(text.substr(i, c.length))) {
            AppendEscaped(out, text.substr(from, i - from), attribute);
            out.append("&#").append(std::to_string(static_cast<unsigned long>(c.code))).append(";");
            from = i + c.length;
        }
        i += c.length;
    }
    AppendEscaped(out, text.substr(from), attribute);
}

// Traverses iteratively: trees built by hand may be deep.
class MarkupWriter {
public:
    explicit MarkupWriter(Markup reader) : m_references(reader == Markup::CodePage && !CodePageHoldsAll()) {}

    std::string Write(const IXMLDOMNode& top, bool inner) {
        IXMLDOMNode node = inner ? top.get_firstChild() : top;
        while (node) {
            if (Open(node)) {
                node = node.get_firstChild();
                continue;
            }
            node = Next(std::move(node), inner);
        }
        return std::move(m_out);
    }

private:
    struct Element {
        IXMLDOMNode node;
        std::string name;
        std::size_t declared;  // how many declarations are in scope outside it
    };

    // Returns the node that follows a finished one. Closes the elements that end there.
    IXMLDOMNode Next(IXMLDOMNode node, bool inner) {
        for (;;) {
            if (m_elements.empty() && !inner) return nullptr;
            if (IXMLDOMNode next = node.get_nextSibling()) return next;
            if (m_elements.empty()) return nullptr;
            node = std::move(m_elements.back().node);
            if (!m_elements.back().name.empty()) m_out.append("</").append(m_elements.back().name).append(">");
            Forget(m_elements.back().declared);
            m_elements.pop_back();
        }
    }

    // Returns true if the node's children come next.
    bool Open(const IXMLDOMNode& node) {
        switch (node.get_nodeType()) {
            case NODE_ELEMENT: return OpenElement(node);
            case NODE_DOCUMENT: return Descend(node, "");
            case NODE_TEXT: AppendText(ValueOf(node.Get()), false); break;
            case NODE_CDATA_SECTION: Append("<![CDATA[", ValueOf(node.Get()), "]]>"); break;
            case NODE_COMMENT: Append("<!--", ValueOf(node.Get()), "-->"); break;
            case NODE_ATTRIBUTE: AppendAttribute(NameOf(node.Get()), ValueOf(node.Get())); break;
            case NODE_PROCESSING_INSTRUCTION: AppendInstruction(node); break;
            default: break;
        }
        return false;
    }

    void Append(std::string_view begin, std::string_view text, std::string_view end) {
        m_out.append(begin).append(text).append(end);
    }

    void AppendText(std::string_view text, bool attribute) {
        if (m_references && !ascii::IsAscii(text))
            AppendReferenced(m_out, text, attribute);
        else
            AppendEscaped(m_out, text, attribute);
    }

    void AppendAttribute(std::string_view name, std::string_view value) {
        m_out.append(name).append("=\"");
        AppendText(value, true);
        m_out += '"';
    }

    // An XML declaration names an encoding that this text no longer has.
    void AppendInstruction(const IXMLDOMNode& node) {
        const std::string name = NameOf(node.Get()), value = ValueOf(node.Get());
        if (name == "xml") return;
        Append("<?", name, value.empty() ? "" : " ");
        m_out.append(value).append("?>");
    }

    bool Descend(const IXMLDOMNode& node, std::string name) {
        if (!node.get_firstChild()) return false;
        m_elements.push_back({node, std::move(name), m_declared.size()});
        return true;
    }

    bool OpenElement(const IXMLDOMNode& node) {
        const std::size_t declared = m_declared.size();
        const std::string name = NameOf(node.Get());
        m_out.append("<").append(name);
        const std::vector<IXMLDOMNode> attributes = node.get_attributes();
        for (const IXMLDOMNode& attribute : attributes) WriteAttribute(attribute);
        Declare(node, name);
        for (const IXMLDOMNode& attribute : attributes) DeclareOf(attribute);
        const bool deeper = Descend(node, name);
        if (deeper) m_elements.back().declared = declared;
        m_out += deeper ? ">" : "/>";
        if (!deeper) Forget(declared);
        return deeper;
    }

    void WriteAttribute(const IXMLDOMNode& attribute) {
        const std::string name = NameOf(attribute.Get()), value = ValueOf(attribute.Get());
        m_out += ' ';
        AppendAttribute(name, value);
        if (IsDeclaration(name)) Know(std::string(DeclaredPrefix(name)), value);
    }

    void DeclareOf(const IXMLDOMNode& attribute) {
        const std::string name = NameOf(attribute.Get());
        if (!PrefixOf(name).empty() && !IsDeclaration(name)) Declare(attribute, name);
    }

    // Writes the declaration of the name's prefix unless it is in scope.
    void Declare(const IXMLDOMNode& node, std::string_view name) {
        const std::string prefix(PrefixOf(name)), uri = NamespaceOf(node.Get());
        if (prefix == "xml" || KnownUri(prefix) == uri || (uri.empty() && !prefix.empty())) return;
        m_out += ' ';
        AppendAttribute(prefix.empty() ? "xmlns" : "xmlns:" + prefix, uri);
        Know(prefix, uri);
    }

    void Know(std::string prefix, std::string uri) {
        m_uris[prefix].push_back(std::move(uri));
        m_declared.push_back(std::move(prefix));
    }

    void Forget(std::size_t declared) {
        for (; m_declared.size() > declared; m_declared.pop_back()) m_uris[m_declared.back()].pop_back();
    }

    std::string_view KnownUri(const std::string& prefix) const {
        const auto known = m_uris.find(prefix);
        return known == m_uris.end() || known->second.empty() ? std::string_view() : known->second.back();
    }

    bool m_references;
    std::string m_out;
    std::vector<Element> m_elements;                         // the open elements
    std::vector<std::string> m_declared;                     // the prefixes declared in these, in order
    KeyedMap<std::string, std::vector<std::string>> m_uris;  // the URIs of each prefix, innermost last
};

}  // namespace

std::string MarkupOf(const IXMLDOMNode& node, Markup reader) {
    return MarkupWriter(reader).Write(node, false);
}

std::string InnerMarkupOf(const IXMLDOMNode& node, Markup reader) {
    return MarkupWriter(reader).Write(node, true);
}

}  // namespace qv::dom
