#include <algorithm>

#include "qvcommon/XmlHelper.h"
#include "xml/PathText.h"
#include "xml/dom/Backend.h"

namespace {

using Node = MSXML2::IXMLDOMNode;
using Element = MSXML2::IXMLDOMElement;
using MSXML2::DOMNodeType;

constexpr long long kMostMissing = 1 << 24;

CString ElementText(std::string_view name, std::string_view value) {
    std::string text;
    text.append("<").append(name).append(">").append(value).append("</").append(name).append(">");
    return text;
}

long long CountOf(const Node& parent, std::string_view name) {
    long long count = 0;
    for (Node child = parent.get_firstChild(); child; child = child.get_nextSibling())
        count += child.get_nodeType() == MSXML2::NODE_ELEMENT && child.get_nodeName() == name;
    return count;
}

// Creates the missing elements of one name, up to an index. The first is parsed alone, so that a value that is not
// well-formed on its own is refused.
void AppendMissing(const Node& parent, const qv::IndexedStep& step, std::string_view value) {
    const long long missing = step.index + 1 - CountOf(parent, step.name);
    if (!step.valid || missing < 1 || missing > kMostMissing)
        _com_raise_error(_com_error::kInvalidArg, "the path cannot be made");
    const CString text = ElementText(step.name, value);
    CXmlHelper::AppendXml(parent, text, 1);
    if (missing == 1) return;
    CString others("<x>");
    for (long long i = 1; i < missing; ++i) others += text;
    CXmlHelper::AppendXml(parent, others += "</x>", 0);
}

void AddMissingAttribute(const Node& parent, std::string_view step, std::string_view value) {
    if (parent.selectSingleNode(step)) return;
    Element(parent).setAttribute(step.substr(1), value);
}

Node LastChild(const Node& parent) {
    Node last;
    for (Node child = parent.get_firstChild(); child; child = child.get_nextSibling()) last = child;
    return last;
}

// Removes the created nodes if the rest of the path cannot be created. They are all below the first missing step.
class Undo {
public:
    void Remember(const Node& parent) {
        if (m_parent) return;
        m_parent = parent;
        m_last = LastChild(parent);
    }

    void Run() const {
        if (!m_parent) return;
        const auto made = [&] { return m_last ? m_last.get_nextSibling() : m_parent.get_firstChild(); };
        while (const Node child = made()) m_parent.removeChild(child);
    }

private:
    Node m_parent, m_last;
};

// Returns the node one step below `parent`, created if missing.
Node MakeStep(const Node& parent, std::string_view step, std::string_view value, Undo& undo) {
    if (Node found = parent.selectSingleNode(step)) return found;
    undo.Remember(parent);
    AppendMissing(parent, qv::ReadIndexedStep(step), value);
    return parent.selectSingleNode(step);
}

CString MakePath(const MSXML2::IXMLDOMDocument& document, std::string_view path, std::string_view value, Undo& undo) {
    Node parent = document;
    parent.Get();
    const bool absolute = path.starts_with('/');
    if (absolute) path.remove_prefix(1);
    CString made;
    for (const std::string_view step : qv::StepsOf(path)) {
        if (!made.IsEmpty() || absolute) made += '/';
        made += step;
        if (step.starts_with('@')) {
            AddMissingAttribute(parent, step, value);
            continue;
        }
        const CString indexed = CXmlHelper::GetIndexedPath(step);
        made = made.Left(made.GetLength() - static_cast<int>(step.size())) + indexed;
        parent = MakeStep(parent, indexed, value, undo);
    }
    return made;
}

const char* TestOf(DOMNodeType type) {
    switch (type) {
        case MSXML2::NODE_TEXT:
        case MSXML2::NODE_CDATA_SECTION: return "text()";
        case MSXML2::NODE_COMMENT: return "comment()";
        default: return "processing-instruction()";
    }
}

CString NameInPath(const Node& node) {
    const DOMNodeType type = node.get_nodeType();
    if (type == MSXML2::NODE_ELEMENT) return node.get_nodeName();
    if (type == MSXML2::NODE_ATTRIBUTE) return "@" + node.get_nodeName();
    return type == MSXML2::NODE_DOCUMENT ? "" : TestOf(type);
}

CString Joined(const std::vector<CString>& fromInside) {
    CString path;
    for (auto step = fromInside.rbegin(); step != fromInside.rend(); ++step) {
        if (!path.IsEmpty()) path += '/';
        path += *step;
    }
    return path;
}

// Returns the path from the node `base`, or from the root.
CString PathDownTo(Node node, const Node& base, int first) {
    std::vector<CString> steps;
    if (node.get_nodeType() == MSXML2::NODE_ATTRIBUTE) return CXmlHelper::GetIndexedName(node);
    while (node && node.get_nodeType() != MSXML2::NODE_DOCUMENT) {
        if (base && node == base) return Joined(steps);
        steps.push_back(CXmlHelper::GetIndexedName(node, first));
        node = node.get_parentNode();
    }
    return base && node && node == base ? Joined(steps) : "/" + Joined(steps);
}

}  // namespace

CString CXmlHelper::GetTagIndex(int index) {
    CString suffix;
    if (index > 0) suffix.Format("[%d]", index);
    return suffix;
}

CString CXmlHelper::CreateXmlPath(const Document& document, std::string_view path, std::string_view value) {
    Undo undo;
    try {
        return MakePath(document, path, value, undo);
    } catch (...) {
        undo.Run();
        throw;
    }
}

CString CXmlHelper::DeleteXmlPath(const Document& document, std::string_view path) {
    const Node node = document.selectSingleNode(path);
    if (!node || node.get_nodeType() == MSXML2::NODE_DOCUMENT) return {};
    if (node.get_nodeType() != MSXML2::NODE_ATTRIBUTE) {
        CString indexed = GetNodePath(node, nullptr);
        node.get_parentNode().removeChild(node);
        return indexed;
    }
    const Element owner(qv::dom::OwnerOf(node.Get()));
    CString indexed = GetNodePath(owner, nullptr) + "/" + GetIndexedName(node);
    owner.removeAttribute(node.get_nodeName());
    return indexed;
}

CString CXmlHelper::GetIndexedPath(std::string_view path) {
    CString indexed;
    bool first = true;
    for (const std::string_view step : qv::StepsOf(path)) {
        if (!std::exchange(first, false)) indexed += '/';
        indexed += step;
        if (qv::TakesIndex(step)) indexed += "[0]";
    }
    return indexed;
}

CString CXmlHelper::GetIndexedName(const Node& node, int first) {
    CString name = NameInPath(node);
    if (name.IsEmpty() || name[0] == '@') return name;
    int place = first;
    for (Node before = node.get_previousSibling(); before; before = before.get_previousSibling())
        place += NameInPath(before) == name;
    CString indexed;
    indexed.Format("%s[%d]", name, place);
    return indexed;
}

CString CXmlHelper::GetIndexedPath(const Node& node, int first) {
    return node.get_nodeType() == MSXML2::NODE_DOCUMENT ? "/" : PathDownTo(node, nullptr, first);
}

CString CXmlHelper::GetNodePath(const Node& node, const Node& base) {
    return PathDownTo(node, base, 0);
}

CString CXmlHelper::GetElementMask(const Element& element) {
    std::vector<CString> names;
    for (Node node = element; node && node.get_nodeType() == MSXML2::NODE_ELEMENT; node = node.get_parentNode())
        names.push_back(node.get_nodeName());
    element.Get();
    return "/" + Joined(names);
}
