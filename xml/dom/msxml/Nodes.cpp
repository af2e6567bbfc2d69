#include <algorithm>
#include <unordered_map>

#include "platform/Utf8.h"
#include "xml/dom/msxml/Internals.h"

namespace qv::dom {
namespace {

BSTR NewText(std::string_view text) {
    const std::u16string wide = platform::Utf8ToWide(text);
    BSTR copy = ::SysAllocStringLen(reinterpret_cast<const wchar_t*>(wide.data()), static_cast<UINT>(wide.size()));
    if (!copy) _com_raise_error(_com_error::kOutOfMemory);
    return copy;
}

std::string Converted(BSTR text) {
    const auto* const wide = reinterpret_cast<const char16_t*>(text);
    return text ? platform::WideToUtf8({wide, ::SysStringLen(text)}) : "";
}

const void* UnknownOf(Node& node) {
    return QueryFor<::IUnknown>(Com(node), IID_IUnknown).Get();
}

// COM requires that one object represents one node, always with the same IUnknown. Some DOMs create a new object for
// each call. Tested once.
bool ObjectsAreNodes() {
    static const bool are = [] {
        HRESULT error = 0;
        const MSXML2::IXMLDOMDocument document(CreateDocument(error));
        if (!document) return true;
        document.put_async(false);
        LoadText(document.Get(), "<a/>");
        const IXMLDOMNode one = DocumentElement(document.Get()), other = DocumentElement(document.Get());
        return UnknownOf(one.Get()) == UnknownOf(other.Get());
    }();
    return are;
}

// Where object identity is unreliable, an element is recognized by a temporary attribute.
class Mark {
public:
    Mark(Node& element, long value) : m_element(QueryFor<::IXMLDOMElement>(Com(element), kElement)) {
        if (m_element) m_element->setAttribute(Name(), Variant(std::to_string(value)).Get());
    }
    Mark(Mark&&) = default;
    ~Mark() {
        if (m_element) m_element->removeAttribute(Name());
    }

    // Returns the value of an element's mark; -1 if it has none.
    static long On(Node& node) {
        const auto element = QueryFor<::IXMLDOMElement>(Com(node), kElement);
        Variant value;
        if (!element || element->getAttribute(Name(), &value) != S_OK) return -1;
        return std::atol(value.InUtf8().c_str());
    }

private:
    static BSTR Name() {
        static const Text name("qv-mark");
        return name.Get();
    }

    ComPtr<::IXMLDOMElement> m_element;
};

bool IsDocument(Node& node) {
    return TypeOf(node) == MSXML2::NODE_DOCUMENT;
}

// Nodes that cannot carry a mark are compared by position.
bool HaveSamePosition(Node& a, Node& b) {
    if (TypeOf(a) != TypeOf(b) || NameOf(a) != NameOf(b)) return false;
    const IXMLDOMNode parentOfA = Parent(a), parentOfB = Parent(b);
    if (!parentOfA || !parentOfB || !(parentOfA == parentOfB)) return false;
    IXMLDOMNode beforeA = PreviousSibling(a), beforeB = PreviousSibling(b);
    while (beforeA && beforeB) {
        beforeA = beforeA.get_previousSibling();
        beforeB = beforeB.get_previousSibling();
    }
    return !beforeA && !beforeB;
}

bool SameElement(Node& a, Node& b) {
    const Mark mark(a, 1);
    return Mark::On(b) == 1;
}

bool SameDocument(Node& a, Node& b) {
    const IXMLDOMNode rootOfA = DocumentElement(a), rootOfB = DocumentElement(b);
    return rootOfA && rootOfB && SameElement(rootOfA.Get(), rootOfB.Get());
}

}  // namespace

Text::Text(std::string_view text) : m_text(NewText(text)) {}

std::string Text::InUtf8() const {
    return Converted(m_text);
}

Variant::Variant(std::string_view text) {
    m_value.vt = VT_BSTR;
    m_value.bstrVal = NewText(text);
}

Variant::Variant(::IUnknown* object) {
    ::VariantInit(&m_value);
    if (!object) return;
    object->AddRef();
    m_value.vt = VT_UNKNOWN;
    m_value.punkVal = object;
}

std::string Variant::InUtf8() const {
    return m_value.vt == VT_BSTR ? Converted(m_value.bstrVal) : "";
}

void Retain(Node& node) noexcept {
    ++node.references;
}

void Release(Node& node) noexcept {
    if (--node.references > 0) return;
    node.object->Release();
    delete &node;
}

bool SameNode(Node& a, Node& b) {
    if (UnknownOf(a) == UnknownOf(b)) return true;
    if (ObjectsAreNodes()) return false;
    if (IsDocument(a) || IsDocument(b)) return IsDocument(a) && IsDocument(b) && SameDocument(a, b);
    const bool elements = TypeOf(a) == MSXML2::NODE_ELEMENT && TypeOf(b) == MSXML2::NODE_ELEMENT;
    return elements ? SameElement(a, b) : HaveSamePosition(a, b);
}

bool Holds(Node& outer, Node& inner) {
    Com(inner)->AddRef();
    for (IXMLDOMNode node = HandleTo(Com(inner)); node; node = node.get_parentNode())
        if (SameNode(outer, node.Get())) return true;
    return false;
}

int DepthOf(Node& node) {
    int depth = 0;
    Com(node)->AddRef();
    for (IXMLDOMNode at = HandleTo(Com(node)); at; at = at.get_parentNode())
        depth += at.get_nodeType() == MSXML2::NODE_ELEMENT;
    return depth;
}

int HeightOf(Node& node) {
    int below = 0;
    for (IXMLDOMNode child = FirstChild(node); child; child = child.get_nextSibling())
        below = std::max(below, HeightOf(child.Get()));
    return below + (TypeOf(node) == MSXML2::NODE_ELEMENT);
}

std::vector<int> IndexesAmong(Node& parent, std::span<const IXMLDOMNode> known) {
    const bool byObject = ObjectsAreNodes();
    std::unordered_map<const void*, int> places;
    std::vector<Mark> marks;
    for (const IXMLDOMNode& node : known) {
        const int index = static_cast<int>(places.size() + marks.size());
        if (byObject)
            places.emplace(UnknownOf(node.Get()), index);
        else
            marks.emplace_back(node.Get(), index);
    }
    std::vector<int> indexes;
    for (IXMLDOMNode child = FirstChild(parent); child; child = child.get_nextSibling()) {
        if (child.get_nodeType() != MSXML2::NODE_ELEMENT) continue;
        if (!byObject) {
            indexes.push_back(static_cast<int>(Mark::On(child.Get())));
            continue;
        }
        const auto place = places.find(UnknownOf(child.Get()));
        indexes.push_back(place == places.end() ? -1 : place->second);
    }
    return indexes;
}

}  // namespace qv::dom
