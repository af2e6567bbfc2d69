#include <algorithm>
#include <optional>

#include "core/KeyedHash.h"
#include "qvcommon/XmlHelper.h"
#include "xml/Numbers.h"
#include "xml/dom/Path.h"

// Reading item after item by its path would look at the first siblings again and again. Where the path is a simple one, all
// siblings are looked at once and put into the order in which the paths would have found them.

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

// Names and indexes, the last step a plain name.
bool EndsInName(std::string_view path) {
    const auto simple = qv::dom::ReadSimplePath(path);
    return simple && !simple->steps.empty() && simple->steps.back().index < 0 && !simple->steps.back().attribute;
}

// The nodes that path, path[1], path[2] ... may mean, by their index: each is the first in the document that has this place
// among its siblings. Siblings come one after the other.
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
        if (!node || node == last) return;  // the same node again: a path like "a|b" has no place for an index
        ReadNode(node, items);
        last = std::move(node);
    }
}

// A format of a path, taken apart at the step in which its number stands.
struct NumberedPath {
    std::string_view above;  // the steps before, "" for none
    std::string_view step;
    std::string_view below;  // those behind
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

// The first of some nodes in which the rest of the path leads somewhere.
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

// A format whose number makes no difference would find the same for ever. No path has more places than there are nodes.
class Bound {
public:
    explicit Bound(const Node& element) : m_element(element) {}

    bool Allows(int index) {
        if (index >= m_most) m_most = static_cast<int>(m_element.selectNodes("//node()|//@*").size());
        return index < m_most;
    }

private:
    const Node& m_element;
    int m_most = 1000;  // up to here it is not worth counting
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
