#include <algorithm>

#include "core/FirstOccurrences.h"
#include "core/TextKeys.h"
#include "platform/Text.h"
#include "qvcommon/StringHelper.h"

namespace {

using Flags = std::vector<bool>;

std::vector<std::uint32_t> FirstTexts(const CStringArray& texts, bool noCase) {
    qv::TextKeys keys(noCase);
    keys.Add(texts);
    return qv::FirstOccurrences(keys.All());
}

Flags FirstOnes(const std::vector<std::uint32_t>& first) {
    Flags kept(first.size());
    for (std::size_t i = 0; i < first.size(); ++i) kept[i] = first[i] == i;
    return kept;
}

// Compacts the flagged items; items without a flag, and those past the flags, are removed.
template <class Item>
void Keep(std::vector<Item>& items, const Flags& kept) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < kept.size(); ++i) {
        if (!kept[i]) continue;
        if (count != i) items[count] = std::move(items[i]);
        ++count;
    }
    items.resize(count);
}

}  // namespace

void CStringHelper::RemoveDuplicates(CStringArray& texts, int noCase) {
    Keep(texts.AsStd(), FirstOnes(FirstTexts(texts, noCase != 0)));
}

void CStringHelper::RemoveDuplicates(CDWordArray& values) {
    const std::vector<std::uint64_t> items(values.begin(), values.end());
    Keep(values.AsStd(), FirstOnes(qv::FirstOccurrences(items)));
}

void CStringHelper::RemoveDuplicates(CStringArray& a, CStringArray& b, int noCase) {
    if (b.GetSize() < a.GetSize()) AfxThrowInvalidArgException();
    const auto firstA = FirstTexts(a, noCase != 0), firstB = FirstTexts(b, noCase != 0);
    std::vector<std::uint64_t> pairs(firstA.size());
    for (std::size_t i = 0; i < pairs.size(); ++i) pairs[i] = std::uint64_t{firstA[i]} << 32 | firstB[i];
    const Flags kept = FirstOnes(qv::FirstOccurrences(pairs));
    Keep(a.AsStd(), kept);
    Keep(b.AsStd(), kept);
}

int CStringHelper::RemoveInstancesOf(CStringArray& texts, std::string_view text, int caseSensitive) {
    const std::string unwanted = caseSensitive ? std::string(text) : qv::platform::ToLower(text);
    return static_cast<int>(std::erase_if(texts.AsStd(), [&](const CString& element) {
        return caseSensitive ? element.AsStd() == unwanted : qv::platform::ToLower(element) == unwanted;
    }));
}

int CStringHelper::RemoveInstancesOf(CStringArray& texts, const CStringArray& unwanted, int caseSensitive) {
    const qv::TextLookup lookup(unwanted, texts, !caseSensitive);
    const std::size_t before = texts.AsStd().size();
    Flags kept(before);
    for (std::size_t i = 0; i < before; ++i) kept[i] = lookup.Find(i) == lookup.kNowhere;
    Keep(texts.AsStd(), kept);
    return static_cast<int>(before - texts.AsStd().size());
}

void CStringHelper::CollateValues(CStringArray& names, CDoubleArray& values) {
    if (values.GetSize() < names.GetSize()) AfxThrowInvalidArgException();
    const auto first = FirstTexts(names, false);
    std::vector<double>& sums = values.AsStd();
    for (std::size_t i = 0; i < first.size(); ++i)
        if (first[i] != i) sums[first[i]] += sums[i];
    const Flags kept = FirstOnes(first);
    Keep(names.AsStd(), kept);
    Keep(sums, kept);
}
