#include <algorithm>
#include <optional>

#include "core/KeyedHash.h"
#include "qvcommon/XmlHelper.h"
#include "xml/Numbers.h"
#include "xml/dom/Path.h"

// Reading each item by its own path would be quadratic in the number of siblings. For a simple path, all siblings are
// read once and ordered as the single paths would have found them.

namespace {

using Node = MSXML2::IXMLDOMNode;
using Nodes = std::vector<Node>;
using Items = std::vector<CString>;

bool Read(const Node& element, std::string_view path, int index, Items& items) {
    CString text;
    if (!CXmlHelper::GetString(element, path, text, index)) return false;
    items.push_back(std::move(text));
    return true;
}

void ReadNode(const Node& node, Items& items) {
    CString text = node.get_text();
    text.Replace("\n", "\r\n");
    items.push_back(std::move(text));
}

// Whether the path consists of names and indexes and its last step is a plain name.
bool EndsInName(std::string_view path) {
    const auto simple = qv::dom::ReadSimplePath(path);
    return simple && !simple->steps.empty() && simple->steps.back().index < 0 && !simple->steps.back().attribute;
}

// Returns, by index, the nodes that path, path[1], path[2] ... may select: the first one in the document with that
// position among its siblings. Siblings are adjacent in the input.
std::vector<Nodes> ByIndex(const Node& element, std::string_view path) {
    std::vector<Nodes> places;
    Node parent;
    std::size_t index = 0;
    for (const Node& node : element.selectNodes(path)) {
        Node above = node.get_parentNode();
        index = above == parent ? index + 1 : 0;
        parent = std::move(above);
        if (places.size() <= index) places.resize(index + 1);
        places[index].push_back(node);
    }
    return places;
}

void ReadByIndex(const Node& element, std::string_view path, Items& items) {
    if (EndsInName(path)) {
        for (const Nodes& nodes : ByIndex(element, path)) ReadNode(nodes.front(), items);
        return;
    }
    Node last;
    for (int i = 0;; ++i) {
        Node node = element.selectSingleNode(CString(path) + CXmlHelper::GetTagIndex(i));
        if (!node || node == last) return;  // the same node again: an index has no effect on a path like "a|b"
        ReadNode(node, items);
        last = std::move(node);
    }
}

// A path format, split at the step that contains its number.
struct NumberedPath {
    std::string_view above;  // the steps before, may be empty
    std::string_view step;
    std::string_view below;  // the steps after
};

std::optional<NumberedPath> TakeApart(std::string_view format) {
    const std::size_t number = format.find("%d");
    if (number == format.npos || format.find('%') != number || format.rfind('%') != number) return std::nullopt;
    const std::size_t start = format.rfind('/', number), end = std::min(format.find('/', number), format.size());
    const std::size_t first = start == format.npos ? 0 : start + 1;
    NumberedPath path{format.substr(0, first ? first - 1 : 0), format.substr(first, end - first),
                      end < format.size() ? format.substr(end + 1) : ""};
    if (first == 1 || (!path.below.empty() && !qv::dom::ReadSimplePath(path.below))) return std::nullopt;
    return path;
}

// Reads from the first of the nodes in which the rest of the path is found.
bool ReadBelow(const Nodes& nodes, std::string_view below, Items& items) {
    if (below.empty()) {
        ReadNode(nodes.front(), items);
        return true;
    }
    return std::any_of(nodes.begin(), nodes.end(), [&](const Node& node) { return Read(node, below, 0, items); });
}

// "list/item[%d]/value"
bool ReadNumberedIndexes(const Node& element, const NumberedPath& path, Items& items) {
    constexpr std::string_view index = "[%d]";
    if (!path.step.ends_with(index)) return false;
    const std::string_view name = path.step.substr(0, path.step.size() - index.size());
    const CString all = path.above.empty() ? CString(name) : CString(path.above) + "/" + name;
    if (!EndsInName(all)) return false;
    for (const Nodes& nodes : ByIndex(element, all))
        if (!ReadBelow(nodes, path.below, items)) break;
    return true;
}

// "list/item%d/value"
bool ReadNumberedNames(const Node& element, const NumberedPath& path, Items& items) {
    const CString all = path.above.empty() ? CString("*") : CString(path.above) + "/*";
    CString name;
    name.Format(qv::RuntimeFormat{path.step}, 0);
    if (!EndsInName(all) || !EndsInName(name)) return false;
    qv::KeyedMap<std::string, Nodes> named;
    for (const Node& node : element.selectNodes(all)) named[node.get_nodeName().AsStd()].push_back(node);
    for (int i = 0;; ++i) {
        name.Format(qv::RuntimeFormat{path.step}, i);
        const auto found = named.find(name.AsStd());
        if (found == named.end() || !ReadBelow(found->second, path.below, items)) return true;
    }
}

// If the number has no effect on the format, every index finds the same node, so the loop needs a bound: the number of
// nodes.
class Bound {
public:
    explicit Bound(const Node& element) : m_element(element) {}

    bool Allows(int index) {
        if (index >= m_most) m_most = static_cast<int>(m_element.selectNodes("//node()|//@*").size());
        return index < m_most;
    }

private:
    const Node& m_element;
    int m_most = 1000;  // not worth counting below this
};

void ReadByFormat(const Node& element, std::string_view format, Items& items) {
    CString path;
    path.Format(qv::RuntimeFormat{format}, 0);
    const auto numbered = TakeApart(format);
    if (numbered && (ReadNumberedIndexes(element, *numbered, items) || ReadNumberedNames(element, *numbered, items)))
        return;
    Bound bound(element);
    for (int i = 0; bound.Allows(i) && Read(element, path, 0, items);) path.Format(qv::RuntimeFormat{format}, ++i);
}

template <class Array, class Convert>
BOOL ReadArray(const Node& element, std::string_view path, Array& values, int mode, Convert convert) {
    Items items;
    element.Get();
    (mode == 0 ? ReadByIndex : ReadByFormat)(element, path, items);
    for (CString& item : items) values.Add(convert(item));
    return !values.IsEmpty();
}

}  // namespace

BOOL CXmlHelper::GetStringArray(const Node& element, std::string_view path, CStringArray& values, int mode) {
    return ReadArray(element, path, values, mode, [](CString& text) { return std::move(text); });
}

BOOL CXmlHelper::GetIntegerArray(const Node& element, std::string_view path, CUIntArray& values, int mode) {
    return ReadArray(element, path, values, mode,
                     [](const CString& text) { return static_cast<UINT>(qv::ReadInteger(text)); });
}

BOOL CXmlHelper::GetDoubleArray(const Node& element, std::string_view path, CDoubleArray& values, int mode) {
    return ReadArray(element, path, values, mode, [](const CString& text) { return qv::ReadDouble(text); });
}

BOOL CXmlHelper::GetBoolArray(const Node& element, std::string_view path, CUIntArray& values, int mode) {
    return ReadArray(element, path, values, mode, [](const CString& text) { return UINT{qv::ReadBool(text)}; });
}
