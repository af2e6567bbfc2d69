#include "core/CharacterSet.h"
#include "core/TextSearch.h"
#include "qvcommon/StringHelper.h"

using qv::CharacterSet;
using qv::platform::CharacterLength;

int CStringHelper::StripBefore(CString& text, std::string_view marker) {
    const int at = text.Find(marker);
    if (at < 0) return 0;
    text = text.Left(at);
    return 1;
}

int CStringHelper::StripAfter(CString& text, std::string_view marker) {
    CString head;
    return StripLeft(text, marker, head);
}

int CStringHelper::StripLeft(CString& text, std::string_view marker, CString& head) {
    const int at = text.Find(marker);
    if (at < 0) return 0;
    CString rest = text.Mid(at + static_cast<int>(marker.size()));
    head = text.Left(at);
    text = std::move(rest);
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

CString CStringHelper::GetStringBetween(CString& source, std::string_view startMarker, std::string_view endMarker,
                                        int consumeStart, int consumeEnd) {
    const std::string_view text = source;
    const std::size_t start = text.find(startMarker);
    if (start == text.npos) return {};
    const std::size_t inner = start + startMarker.size(), end = text.find(endMarker, inner);
    CString result(text.substr(inner, end == text.npos ? end : end - inner));
    if (consumeEnd && end != text.npos)
        source.Delete(0, static_cast<int>(end + endMarker.size()));
    else if (consumeStart)
        source.Delete(0, static_cast<int>(inner));
    return result;
}

int CStringHelper::IsStringInRange(std::string_view text, std::string_view startMarker, std::string_view endMarker) {
    const std::size_t start = text.find(startMarker), end = text.find(endMarker);
    return start != text.npos && (end == text.npos || end > start);
}

int CStringHelper::FindWholeWord(std::string_view text, std::string_view word) {
    if (text.find(std::string(word) + ' ') != text.npos) return 1;
    const std::size_t first = text.find(word);
    return first != text.npos && first + word.size() == text.size();
}
