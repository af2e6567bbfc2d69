#include "core/TextSearch.h"
#include "framework/CharacterSet.h"
#include "framework/ExactSearch.h"
#include "qvcommon/StringHelper.h"

using qv::CharacterSet;
using qv::FindExact;
using qv::platform::CharacterLength;

namespace {

// `end` must be a suffix of the text.
void KeepEnd(CString& text, std::string_view end) {
    text.Delete(0, text.GetLength() - static_cast<int>(end.size()));
}

}  // namespace

int CStringHelper::StripBefore(std::string_view& text, std::string_view marker) {
    const std::size_t at = FindExact(text, marker);
    if (at == text.npos) return 0;
    text = text.substr(0, at);
    return 1;
}

int CStringHelper::StripAfter(std::string_view& text, std::string_view marker) {
    std::string_view head;
    return StripLeft(text, marker, head);
}

int CStringHelper::StripLeft(std::string_view& text, std::string_view marker, std::string_view& head) {
    const std::size_t at = FindExact(text, marker);
    if (at == text.npos) return 0;
    const std::string_view all = text;
    text = all.substr(at + marker.size());
    head = all.substr(0, at);
    return 1;
}

int CStringHelper::StripBefore(CString& text, std::string_view marker) {
    std::string_view kept = text;
    if (!StripBefore(kept, marker)) return 0;
    text.AsStd().resize(kept.size());
    return 1;
}

int CStringHelper::StripAfter(CString& text, std::string_view marker) {
    std::string_view kept = text;
    if (!StripAfter(kept, marker)) return 0;
    KeepEnd(text, kept);
    return 1;
}

int CStringHelper::StripLeft(CString& text, std::string_view marker, CString& head) {
    std::string_view kept = text, before;
    if (!StripLeft(kept, marker, before)) return 0;
    if (&head != &text) head = before;
    KeepEnd(text, kept);
    return 1;
}

void CStringHelper::StripFromLeft(CString& text, std::string_view characters) {
    const CharacterSet stripped(characters);
    const std::string_view all = text;
    const auto page = qv::platform::CurrentCodePage();
    std::size_t kept = 0;
    while (kept < all.size()) {
        const std::size_t length = CharacterLength(all, kept, page);
        if (!stripped.Contains(all.substr(kept, length))) break;
        kept += length;
    }
    text.Delete(0, static_cast<int>(kept));
}

CString CStringHelper::RemoveAfter(std::string_view text, std::string_view marker, int noCase) {
    return text.substr(0, qv::TextSearch(text, marker, qv::CaseRuleFor(noCase)).Find(0).position);
}

std::string_view CStringHelper::GetStringBetween(std::string_view& source, std::string_view startMarker,
                                                 std::string_view endMarker, int consumeStart, int consumeEnd) {
    const std::string_view text = source;
    const std::size_t start = FindExact(text, startMarker);
    if (start == text.npos) return {};
    const std::size_t inner = start + startMarker.size(), end = FindExact(text, endMarker, inner);
    if (consumeEnd && end != text.npos)
        source = text.substr(end + endMarker.size());
    else if (consumeStart)
        source = text.substr(inner);
    return text.substr(inner, end == text.npos ? end : end - inner);
}

CString CStringHelper::GetStringBetween(CString& source, std::string_view startMarker, std::string_view endMarker,
                                        int consumeStart, int consumeEnd) {
    std::string_view kept = source;
    CString result(GetStringBetween(kept, startMarker, endMarker, consumeStart, consumeEnd));
    KeepEnd(source, kept);
    return result;
}

int CStringHelper::IsStringInRange(std::string_view text, std::string_view startMarker, std::string_view endMarker) {
    const std::size_t start = FindExact(text, startMarker);
    if (start == text.npos) return 0;
    const std::size_t end = FindExact(text, endMarker);
    return end == text.npos || end > start;
}

int CStringHelper::FindWholeWord(std::string_view text, std::string_view word) {
    if (FindExact(text, std::string(word) + ' ') != text.npos) return 1;
    const std::size_t first = FindExact(text, word);
    return first != text.npos && first + word.size() == text.size();
}
