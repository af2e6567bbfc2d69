#include <algorithm>
#include <iterator>

#include "core/CollationOrder.h"
#include "qvcommon/StringHelper.h"

namespace {

// For each sorted position the index before sorting. All orders are stable.
using Order = std::vector<std::uint32_t>;

template <class Texts>
Order CollationOrder(const Texts& texts, bool descending) {
    std::vector<const CString*> pointers;
    for (const CString& text : texts) pointers.push_back(&text);
    return qv::CollationOrder(pointers, descending);
}

// Combines value and index into one number, so that sorting needs no other comparison.
template <class Values, class Number>
Order NumberOrder(const Values& values, bool descending, Number number) {
    std::vector<std::uint64_t> keys;
    keys.reserve(values.AsStd().size());
    for (const auto& value : values) {
        const auto key = static_cast<std::uint32_t>(number(value));
        keys.push_back(std::uint64_t{descending ? ~key : key} << 32 | keys.size());
    }
    std::sort(keys.begin(), keys.end());
    return Order(keys.begin(), keys.end());
}

Order SizeOrder(const CStringArray& texts, bool descending) {
    return NumberOrder(texts, descending, [](const CString& text) { return text.GetLength(); });
}

template <class Array>
void Require(const Array& companions, const CStringArray& texts) {
    if (companions.GetSize() < texts.GetSize()) AfxThrowInvalidArgException();
}

// Items beyond the order are not moved.
template <class Array>
void Arrange(Array& array, const Order& order) {
    auto& items = array.AsStd();
    std::remove_reference_t<decltype(items)> arranged;
    arranged.reserve(items.size());
    for (std::uint32_t index : order) arranged.push_back(std::move(items[index]));
    std::move(items.begin() + static_cast<std::ptrdiff_t>(order.size()), items.end(), std::back_inserter(arranged));
    items = std::move(arranged);
}

template <class... Companions>
void Sort(Order (*orderOf)(const CStringArray&, bool), bool descending, CStringArray& texts,
          Companions&... companions) {
    (Require(companions, texts), ...);
    const Order order = orderOf(texts, descending);
    Arrange(texts, order);
    // An array may be its own companion, or passed twice.
    std::vector<const void*> arranged{&texts};
    [[maybe_unused]] const auto arrangeOnce = [&](auto& array) {
        if (std::find(arranged.begin(), arranged.end(), &array) != arranged.end()) return;
        arranged.push_back(&array);
        Arrange(array, order);
    };
    (arrangeOnce(companions), ...);
}

}  // namespace

void CStringHelper::SortStringArray(CStringArray& texts, int descending) {
    Sort(CollationOrder<CStringArray>, descending != 0, texts);
}

void CStringHelper::SortStringList(CStringList& texts, int descending) {
    const Order order = CollationOrder(texts, descending != 0);
    CStringArray array;
    array.AsStd().reserve(order.size());
    for (CString& text : texts) array.Add(std::move(text));
    auto target = texts.begin();
    for (std::uint32_t index : order) *target++ = std::move(array.AsStd()[index]);
}

void CStringHelper::SortStringArrayBySize(CStringArray& texts, int descending) {
    Sort(SizeOrder, descending != 0, texts);
}

void CStringHelper::SortStringArray(CStringArray& texts, CPtrArray& companions, int descending) {
    Sort(CollationOrder<CStringArray>, descending != 0, texts, companions);
}

void CStringHelper::SortStringArrayBySize(CStringArray& texts, CPtrArray& companions, int descending) {
    Sort(SizeOrder, descending != 0, texts, companions);
}

void CStringHelper::SortStringArray(CStringArray& texts, CStringArray& companions, int descending) {
    Sort(CollationOrder<CStringArray>, descending != 0, texts, companions);
}

void CStringHelper::SortStringArrayBySize(CStringArray& texts, CStringArray& companions, int descending) {
    Sort(SizeOrder, descending != 0, texts, companions);
}

void CStringHelper::SortStringArray(CStringArray& texts, CStringArray& first, CStringArray& second, int descending) {
    Sort(CollationOrder<CStringArray>, descending != 0, texts, first, second);
}

void CStringHelper::SortStringArray(CStringArray& texts, CStringArray& first, CUIntArray& second, int descending) {
    Sort(CollationOrder<CStringArray>, descending != 0, texts, first, second);
}

void CStringHelper::SortStringArray(CStringArray& texts, CDoubleArray& companions) {
    Sort(CollationOrder<CStringArray>, false, texts, companions);
}

void CStringHelper::SortStringArray(CStringArray& texts, CUIntArray& companions) {
    Sort(CollationOrder<CStringArray>, false, texts, companions);
}

void CStringHelper::IndexSortCStringArray(CStringArray& texts, CDWordArray& indexes, int descending) {
    const Order order = CollationOrder(texts, descending != 0);
    indexes.AsStd().assign(order.begin(), order.end());
    Arrange(texts, order);
}

void CStringHelper::IndexSortDwordArray(CDWordArray& values, CDWordArray& indexes, int descending) {
    const Order order = NumberOrder(values, descending != 0, [](DWORD value) { return value; });
    Arrange(values, order);
    indexes.AsStd().assign(order.begin(), order.end());
}
