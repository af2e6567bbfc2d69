#include "xml/dom/Markup.h"

#include <utility>

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

void AppendAttribute(std::string& out, std::string_view name, std::string_view value) {
    out.append(name).append("=\"");
    AppendEscaped(out, value, true);
    out += '"';
}

std::string PrefixOf(std::string_view name) {
    const std::size_t colon = name.find(':');
    return std::string(colon == name.npos ? "" : name.substr(0, colon));
}

// Walks down and up again without a stack of calls: trees made by hand may be deep.
class MarkupWriter {
public:
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
        std::size_t declared;  // how many prefixes were known outside it
    };

    // The node behind a finished one. Closes the elements that end there.
    IXMLDOMNode Next(IXMLDOMNode node, bool inner) {
        for (;;) {
            if (m_elements.empty() && !inner) return nullptr;
            if (IXMLDOMNode next = node.get_nextSibling()) return next;
            if (m_elements.empty()) return nullptr;
            node = std::move(m_elements.back().node);
            if (!m_elements.back().name.empty()) m_out.append("</").append(m_elements.back().name).append(">");
            m_known.resize(m_elements.back().declared);
            m_elements.pop_back();
        }
    }

    // True when the node's children come next.
    bool Open(const IXMLDOMNode& node) {
        switch (node.get_nodeType()) {
            case NODE_ELEMENT: return OpenElement(node);
            case NODE_DOCUMENT: return Descend(node, "");
            case NODE_TEXT: AppendEscaped(m_out, node.get_nodeValue(), false); break;
            case NODE_CDATA_SECTION: Append("<![CDATA[", node.get_nodeValue(), "]]>"); break;
            case NODE_COMMENT: Append("<!--", node.get_nodeValue(), "-->"); break;
            case NODE_ATTRIBUTE: AppendAttribute(m_out, node.get_nodeName(), node.get_nodeValue()); break;
            case NODE_PROCESSING_INSTRUCTION: AppendInstruction(node); break;
            default: break;
        }
        return false;
    }

    void Append(std::string_view begin, std::string_view text, std::string_view end) {
        m_out.append(begin).append(text).append(end);
    }

    // A declaration speaks of an encoding that this text no longer has.
    void AppendInstruction(const IXMLDOMNode& node) {
        const CString name = node.get_nodeName(), value = node.get_nodeValue();
        if (name == "xml") return;
        Append("<?", name, value.IsEmpty() ? "" : " ");
        m_out.append(value).append("?>");
    }

    bool Descend(const IXMLDOMNode& node, std::string name) {
        if (!node.get_firstChild()) return false;
        m_elements.push_back({node, std::move(name), m_known.size()});
        return true;
    }

    bool OpenElement(const IXMLDOMNode& node) {
        const std::size_t declared = m_known.size();
        const std::string name = node.get_nodeName().AsStd();
        m_out.append("<").append(name);
        const std::vector<IXMLDOMNode> attributes = node.get_attributes();
        for (const IXMLDOMNode& attribute : attributes) WriteAttribute(attribute);
        Declare(node, name);
        for (const IXMLDOMNode& attribute : attributes) DeclareOf(attribute);
        const bool deeper = Descend(node, name);
        if (deeper) m_elements.back().declared = declared;
        m_out += deeper ? ">" : "/>";
        if (!deeper) m_known.resize(declared);
        return deeper;
    }

    void WriteAttribute(const IXMLDOMNode& attribute) {
        const CString name = attribute.get_nodeName(), value = attribute.get_nodeValue();
        m_out += ' ';
        AppendAttribute(m_out, name, value);
        if (name == "xmlns") m_known.emplace_back("", value.AsStd());
        if (name.Left(6) == "xmlns:") m_known.emplace_back(name.Mid(6).AsStd(), value.AsStd());
    }

    void DeclareOf(const IXMLDOMNode& attribute) {
        const std::string name = attribute.get_nodeName().AsStd(), prefix = PrefixOf(name);
        if (!prefix.empty() && prefix != "xmlns") Declare(attribute, name);
    }

    // Writes the declaration of the name's prefix, unless one is in force.
    void Declare(const IXMLDOMNode& node, const std::string& name) {
        std::string prefix = PrefixOf(name), uri = node.get_namespaceURI().AsStd();
        if (prefix == "xml" || KnownUri(prefix) == uri || (uri.empty() && !prefix.empty())) return;
        m_out += ' ';
        AppendAttribute(m_out, prefix.empty() ? "xmlns" : "xmlns:" + prefix, uri);
        m_known.emplace_back(std::move(prefix), std::move(uri));
    }

    std::string_view KnownUri(const std::string& prefix) const {
        for (auto it = m_known.rbegin(); it != m_known.rend(); ++it)
            if (it->first == prefix) return it->second;
        return {};
    }

    std::string m_out;
    std::vector<Element> m_elements;                           // that are open
    std::vector<std::pair<std::string, std::string>> m_known;  // prefixes in force and their URIs
};

}  // namespace

std::string MarkupOf(const IXMLDOMNode& node) {
    return MarkupWriter().Write(node, false);
}

std::string InnerMarkupOf(const IXMLDOMNode& node) {
    return MarkupWriter().Write(node, true);
}

}  // namespace qv::dom
