// Random operations on trees: after each accepted one, the tree survives saving and loading.
#include <array>
#include <clocale>

#include "fuzz/FuzzInput.h"
#include "qvcommon/XmlDomElement.h"

namespace {

using MSXML2::IXMLDOMDocument;
using MSXML2::IXMLDOMElement;
using MSXML2::IXMLDOMNode;

class Trees {
public:
    explicit Trees(FuzzInput& input) : m_input(input) {
        for (IXMLDOMDocument& document : m_documents) {
            document = CXmlHelper::CreateDocument();
            document.put_preserveWhiteSpace(true);
            document.load(input.Text());
            Hold(document);
            Hold(document.get_documentElement());
        }
    }

    // Runs one operation for each text of the input; its first bytes select the operation and the nodes.
    bool Step() {
        const std::string_view text = m_input.Text();
        if (text.size() < 3) return false;
        const IXMLDOMNode a = At(text[1]), b = At(text[2]);
        try {
            Run(text[0], a, b, text.substr(3));
        } catch (const _com_error&) {
        }
        return true;
    }

    void Compare() const {
        for (const IXMLDOMDocument& document : m_documents) {
            if (!document.get_documentElement()) continue;
            const IXMLDOMDocument again = CXmlHelper::CreateDocument();
            again.put_preserveWhiteSpace(true);
            const std::string saved = document.save();
            Require(again.load(saved), "what was saved is loaded");
            Require(again.get_xml() == document.get_xml(), "it is what it was");
            Require(again.save() == saved, "it is saved as before");
        }
        for (const IXMLDOMNode& node : m_held) {
            const bool whole = node.get_nodeType() == MSXML2::NODE_ELEMENT;
            Require(!whole || CXmlHelper::GetDocumentElement(node.get_xml()), "the markup of an element is read");
        }
    }

private:
    void Hold(const IXMLDOMNode& node) {
        if (node && m_held.size() < 64) m_held.push_back(node);
    }

    // A loaded document has no empty text nodes.
    static void PutText(const IXMLDOMNode& node, std::string_view text) {
        if (!text.empty() || node.get_nodeType() != MSXML2::NODE_TEXT) node.put_text(text);
    }

    // An element that copies one around it doubles the tree.
    static void Sync(const IXMLDOMElement& to, const IXMLDOMElement& from) {
        if (CString(from.get_xml()).GetLength() < 2000) CXmlDomElement::SyncNode(to, from);
    }

    IXMLDOMNode At(char c) const { return m_held[static_cast<unsigned char>(c) % m_held.size()]; }

    void Run(char operation, const IXMLDOMNode& a, const IXMLDOMNode& b, std::string_view text) {
        const IXMLDOMElement element(a);
        const std::string_view name = text.substr(0, text.find('=')), value = text.substr(name.size());
        switch (static_cast<unsigned char>(operation) % 16) {
            case 0: return Hold(m_documents[0].createElement(text, a));
            case 1: return Hold(a.appendChild(b));
            case 2: return Hold(b.get_parentNode().insertBefore(a, b));
            case 3: return Hold(a.removeChild(b));
            case 4:
            case 5: return element.setAttribute(name, value);
            case 6: return element.removeAttribute(text);
            case 7: return PutText(a, text);
            case 8: return Hold(a.selectSingleNode(text));
            case 9: return static_cast<void>(CXmlHelper::SetXml(element, text));
            case 10: return Hold(CXmlHelper::AppendXml(a, text, 1));
            case 11: return Sync(element, IXMLDOMElement(b));
            case 12: return static_cast<void>(CXmlHelper::AddElement(a, name, value));
            case 13: return static_cast<void>(m_documents[1].loadXML(text));
            case 14: return Hold(a.get_firstChild());
            default: m_held.erase(m_held.begin() + static_cast<std::ptrdiff_t>(m_held.size() - 1));
        }
        if (m_held.empty()) Hold(m_documents[0]);
    }

    FuzzInput& m_input;
    std::array<IXMLDOMDocument, 2> m_documents;
    std::vector<IXMLDOMNode> m_held;
};

}  // namespace

// The UTF-8 code page can represent every name.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    std::setlocale(LC_ALL, "C.UTF-8");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    Trees trees(input);
    while (trees.Step()) {
    }
    trees.Compare();
    return 0;
}
