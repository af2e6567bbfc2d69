#include <algorithm>
#include <numeric>

#include "platform/Text.h"
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

std::string KeyText(const Node& element, std::string_view pattern) {
    std::string key;
    if (const Node found = element.selectSingleNode(pattern)) qv::platform::AppendCollationKey(found.get_text(), key);
    return key;
}

// The order in which the elements have to stand: indexes into them.
std::vector<std::size_t> OrderOf(const Nodes& elements, const CStringArray& patterns, bool descending) {
    std::vector<std::vector<std::string>> keys(elements.size());
    for (std::size_t i = 0; i < elements.size(); ++i)
        for (const CString& pattern : patterns) keys[i].push_back(KeyText(elements[i], pattern));
    std::vector<std::size_t> order(elements.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return descending ? keys[b] < keys[a] : keys[a] < keys[b]; });
    return order;
}

// Sorts those of the children that stand at the given places, among these places. All children are set down anew.
void SortPlaces(const Node& parent, Nodes children, const std::vector<std::size_t>& places,
                const CStringArray& patterns, bool descending) {
    Nodes elements;
    for (const std::size_t place : places) elements.push_back(children[place]);
    const std::vector<std::size_t> order = OrderOf(elements, patterns, descending);
    for (std::size_t i = 0; i < places.size(); ++i) children[places[i]] = elements[order[i]];
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
