#include <algorithm>

#include "core/CaseRule.h"
#include "core/TextKeys.h"
#include "framework/ExactSearch.h"
#include "qvcommon/StringHelper.h"

using qv::AreEqual;
using qv::CaseRule;
using qv::CaseRuleFor;
using qv::TextLookup;

namespace {

bool AreEqual(std::string_view a, std::string_view b, int caseSensitive) {
    return qv::AreEqual(a, b, CaseRuleFor(!caseSensitive));
}

CString WithoutCarriageReturns(std::string_view text) {
    CString copy(text);
    copy.Remove('\r');
    return copy;
}

void AppendAt(CStringArray& out, const CStringArray& texts, const CUIntArray& indexes) {
    for (const UINT index : indexes) out.Add(texts[static_cast<int>(index)]);
}

bool HasHyphensAt(std::string_view text, std::initializer_list<std::size_t> positions) {
    return std::all_of(positions.begin(), positions.end(), [&](std::size_t i) { return text[i] == '-'; });
}

}  // namespace

int CStringHelper::Equals(std::string_view a, std::string_view b, int caseSensitive) {
    return AreEqual(a, b, caseSensitive);
}

int CStringHelper::EqualIgnoreNewlineType(std::string_view a, std::string_view b, int caseSensitive) {
    return AreEqual(WithoutCarriageReturns(a), WithoutCarriageReturns(b), caseSensitive);
}

int CStringHelper::StartsWith(std::string_view text, std::string_view prefix, int caseSensitive) {
    return text.size() >= prefix.size() && AreEqual(text.substr(0, prefix.size()), prefix, caseSensitive);
}

int CStringHelper::StartsWith(std::string_view text, std::string_view prefix, CString& rest, int caseSensitive) {
    if (!StartsWith(text, prefix, caseSensitive)) return 0;
    rest = CString(text.substr(prefix.size()));  // the text may be the string that receives the rest
    return 1;
}

int CStringHelper::EndsWith(std::string_view text, std::string_view suffix, int caseSensitive) {
    return text.size() >= suffix.size() && AreEqual(text.substr(text.size() - suffix.size()), suffix, caseSensitive);
}

int CStringHelper::Find(const CStringArray& texts, std::string_view text, int noCase) {
    return GetIndex(texts, text, noCase, -1) >= 0;
}

int CStringHelper::Find(const CStringArray& texts, std::initializer_list<std::string_view> wanted, int noCase) {
    return Find(texts, CStringArray(wanted.begin(), wanted.end()), noCase);
}

int CStringHelper::Find(const CStringArray& texts, const CStringArray& wanted, int noCase) {
    if (texts.IsEmpty() || wanted.IsEmpty()) return 0;
    const TextLookup lookup(texts, wanted, noCase != 0);
    for (std::size_t i = 0; i < lookup.WantedCount(); ++i)
        if (lookup.Find(i) != lookup.kNowhere) return 1;
    return 0;
}

int CStringHelper::GetIndex(const CStringArray& texts, std::string_view text, int noCase, int start) {
    const CaseRule rule = CaseRuleFor(noCase);
    const auto& items = texts.AsStd();
    for (std::size_t i = start < 0 ? 0 : static_cast<std::size_t>(start) + 1; i < items.size(); ++i)
        if (AreEqual(items[i], text, rule)) return static_cast<int>(i);
    return -1;
}

int CStringHelper::GetCount(const CStringArray& texts, std::string_view text) {
    return static_cast<int>(std::count(texts.begin(), texts.end(), text));
}

int CStringHelper::EqualContents(const CStringArray& a, const CStringArray& b, int noCase) {
    if (a == b) return 1;
    const TextLookup lookup(a, b, noCase != 0);
    std::vector<bool> seen(a.AsStd().size());
    for (std::size_t i = 0; i < lookup.WantedCount(); ++i) {
        const std::size_t found = lookup.Find(i);
        if (found == lookup.kNowhere) return 0;
        seen[found] = true;
    }
    for (std::size_t i = 0; i < seen.size(); ++i)
        if (!seen[lookup.FirstLike(i)]) return 0;
    return 1;
}

void CStringHelper::CompareContents(const CStringArray& oldTexts, const CStringArray& newTexts, CStringArray& removed,
                                    CStringArray& kept, CStringArray& added) {
    CUIntArray removedAt, keptInOld, keptInNew, addedAt;
    CompareContents(oldTexts, newTexts, removedAt, keptInOld, keptInNew, addedAt);
    AppendAt(removed, oldTexts, removedAt);
    AppendAt(kept, oldTexts, keptInOld);
    AppendAt(added, newTexts, addedAt);
}

void CStringHelper::CompareContents(const CStringArray& oldTexts, const CStringArray& newTexts, CUIntArray& removed,
                                    CUIntArray& keptInOld, CUIntArray& keptInNew, CUIntArray& added) {
    const TextLookup lookup(newTexts, oldTexts, false);
    std::vector<bool> seen(newTexts.AsStd().size());
    for (std::size_t i = 0; i < lookup.WantedCount(); ++i) {
        const std::size_t found = lookup.Find(i);
        if (found == lookup.kNowhere) {
            removed.Add(static_cast<UINT>(i));
            continue;
        }
        keptInOld.Add(static_cast<UINT>(i));
        keptInNew.Add(static_cast<UINT>(found));
        seen[found] = true;
    }
    // A text is in the old array exactly if the first equal one was seen.
    for (std::size_t i = 0; i < seen.size(); ++i)
        if (!seen[lookup.FirstLike(i)]) added.Add(static_cast<UINT>(i));
}

void CStringHelper::SetInstanceOf(const CStringArray& all, const CStringArray& chosen, CUIntArray& flags) {
    const TextLookup lookup(all, chosen, false);
    for (std::size_t i = 0; i < lookup.WantedCount(); ++i)
        if (lookup.Find(i) != lookup.kNowhere) flags.SetAt(static_cast<int>(lookup.Find(i)), 1);
}

int CStringHelper::CountOf(std::string_view text, std::string_view find) {
    if (find.empty()) return 0;
    qv::ExactSearch search(text, find);
    int count = 0;
    for (std::size_t at = search.Find(0); at != text.npos; at = search.Find(at + find.size())) ++count;
    return count;
}

int CStringHelper::CountOf(std::string_view text, char c) {
    if (qv::MayMatchPart(text, {&c, 1})) return CountOf(text, std::string_view(&c, 1));
    return static_cast<int>(std::count(text.begin(), text.end(), c));
}

int CStringHelper::IsLowerCase(std::string_view text) {
    return qv::platform::ToLower(text) == text;
}

int CStringHelper::IsUpperCase(std::string_view text) {
    return qv::platform::ToUpper(text) == text;
}

int CStringHelper::IsNumeric(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == text.npos;
}

int CStringHelper::IsGuid(std::string_view text) {
    return text.size() == 38 && text.front() == '{' && text.back() == '}' && HasHyphensAt(text, {9, 14, 19});
}

int CStringHelper::IsBracelessGuid(std::string_view text) {
    return text.size() == 36 && HasHyphensAt(text, {8, 13, 18});
}
