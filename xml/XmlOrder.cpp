#include <algorithm>

#include "core/CollationOrder.h"
#include "qvcommon/XmlHelper.h"
#include "xml/Elements.h"
#include "xml/dom/Backend.h"
#include "xml/dom/Characters.h"

namespace {

using Node = MSXML2::IXMLDOMNode;
using Nodes = std::vector<Node>;
using qv::ChildrenOf;
using qv::IsElement;

bool HoldsNothing(const Node& element) {
    if (!element.get_attributes().empty()) return false;
    for (Node child = element.get_firstChild(); child; child = child.get_nextSibling())
        if (IsElement(child)) return false;
    return qv::dom::IsBlank(element.get_text());
}

CString KeyText(const Node& element, std::string_view pattern) {
    const Node found = element.selectSingleNode(pattern);
    return found ? found.get_text() : CString();
}

// Sorts the elements by one more key, which takes precedence over the earlier ones. The sort is stable.
Nodes SortedBy(const Nodes& elements, std::string_view pattern, bool descending) {
    std::vector<CString> keys;
    keys.reserve(elements.size());
    for (const Node& element : elements) keys.push_back(KeyText(element, pattern));
    std::vector<const CString*> pointers;
    pointers.reserve(keys.size());
    for (const CString& key : keys) pointers.push_back(&key);
    Nodes sorted;
    for (const std::uint32_t index : qv::CollationOrder(pointers, descending)) sorted.push_back(elements[index]);
    return sorted;
}

// Sorts the children at the given positions among these positions. All children are appended again.
void SortPlaces(const Node& parent, Nodes children, const std::vector<std::size_t>& places,
                const CStringArray& patterns, bool descending) {
    Nodes elements;
    for (const std::size_t place : places) elements.push_back(children[place]);
    for (auto pattern = patterns.end(); pattern != patterns.begin();)
        elements = SortedBy(elements, *--pattern, descending);
    for (std::size_t i = 0; i < places.size(); ++i) children[places[i]] = elements[i];
    for (const Node& child : children) parent.appendChild(child);
}

std::vector<std::size_t> PlacesOfElements(const Nodes& children) {
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < children.size(); ++i)
        if (IsElement(children[i])) places.push_back(i);
    return places;
}

}  // namespace

BOOL CXmlHelper::DeleteIfEmpty(const Node& node) {
    if (!IsElement(node) || !HoldsNothing(node)) return 0;
    const Node parent = node.get_parentNode();
    if (!parent || !IsElement(parent)) return 0;
    parent.removeChild(node);
    return 1;
}

int CXmlHelper::DeleteEmptyElements(const Node& node, std::string_view pattern) {
    const Nodes found = node.selectNodes(pattern.empty() ? "descendant::*" : pattern);
    int deleted = 0;
    for (auto inner = found.rbegin(); inner != found.rend(); ++inner) deleted += DeleteIfEmpty(*inner);
    return deleted;
}

void CXmlHelper::Sort(const Node& node, std::string_view pattern, int descending) {
    Sort(node, CStringArray{pattern}, descending);
}

void CXmlHelper::Sort(const Node& node, const CStringArray& patterns, int descending) {
    const Nodes children = ChildrenOf(node);
    SortPlaces(node, children, PlacesOfElements(children), patterns, descending != 0);
}

void CXmlHelper::Sort(const Node& node, const CStringArray& patterns, std::string_view elements, int descending) {
    const Nodes children = ChildrenOf(node), selected = node.selectNodes(elements);
    const std::vector<int> indexes = qv::dom::IndexesAmong(node.Get(), selected);
    const std::vector<std::size_t> all = PlacesOfElements(children);
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < all.size(); ++i)
        if (indexes[i] >= 0) places.push_back(all[i]);
    SortPlaces(node, children, places, patterns, descending != 0);
}

void CXmlHelper::SortSection(const Node& node, std::string_view pattern, int first, int last, int descending) {
    const Nodes children = ChildrenOf(node);
    const std::vector<std::size_t> elements = PlacesOfElements(children);
    const auto count = static_cast<int>(elements.size());
    first = std::clamp(first, 0, count);
    last = last == -1 ? count : std::clamp(last, first - 1, count - 1) + 1;
    const std::vector<std::size_t> places(elements.begin() + first, elements.begin() + std::max(first, last));
    SortPlaces(node, children, places, CStringArray{pattern}, descending != 0);
}
