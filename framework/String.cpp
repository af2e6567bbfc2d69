#include "qvcommon/framework/String.h"

#include <algorithm>

#include "framework/CharacterSet.h"
#include "framework/ExactSearch.h"
#include "platform/Ascii.h"
#include "platform/Text.h"

char CString::GetAt(int position) const {
    if (position < 0 || position >= GetLength()) AfxThrowInvalidArgException();
    return data()[position];
}

void CString::SetAt(int position, char c) {
    if (position < 0 || position >= GetLength()) AfxThrowInvalidArgException();
    data()[position] = c;
}

CString CString::Mid(int first, int count) const {
    const std::size_t start = std::min(Count(first), size());
    return CString(View().substr(start, Count(count)));
}

CString CString::Right(int count) const {
    const std::size_t kept = std::min(Count(count), size());
    return CString(View().substr(size() - kept));
}

int CString::Find(std::string_view text, int start) const {
    return Position(qv::ExactSearch(*this, text).Find(Count(start)));
}

int CString::ReverseFind(char c) const {
    if (!qv::MayMatchPart(*this, {&c, 1})) return Position(rfind(c));
    std::size_t last = npos;
    qv::ForEachCharacter(*this, [&](std::string_view character) {
        if (character.size() == 1 && character[0] == c) last = static_cast<std::size_t>(character.data() - data());
    });
    return Position(last);
}

int CString::FindOneOf(std::string_view set) const {
    if (!qv::HasTrailBytes(*this) && qv::ascii::IsAscii(set)) return Position(find_first_of(set));
    const qv::CharacterSet wanted(set);
    const auto page = qv::platform::CurrentCodePage();
    for (std::size_t i = 0, length; i < size(); i += length) {
        length = qv::platform::CharacterLength(*this, i, page);
        if (wanted.Contains(View().substr(i, length))) return Position(i);
    }
    return -1;
}

int CString::Replace(std::string_view find, std::string_view replacement) {
    if (find.empty()) return 0;
    qv::ExactSearch search(*this, find);
    std::size_t hit = search.Find(0);
    if (hit == npos) return 0;
    std::string out;
    std::size_t from = 0;
    int count = 0;
    for (; hit != npos; hit = search.Find(from), ++count) {
        out.append(*this, from, hit - from).append(replacement);
        from = hit + find.size();
    }
    out.append(*this, from);
    AsStd() = std::move(out);
    return count;
}

int CString::Replace(char find, char replacement) {
    if (find == replacement) return 0;
    if (qv::MayMatchPart(*this, {&find, 1}))
        return Replace(std::string_view(&find, 1), std::string_view(&replacement, 1));
    const auto count = std::count(begin(), end(), find);
    std::replace(begin(), end(), find, replacement);
    return static_cast<int>(count);
}

int CString::Remove(char c) {
    if (qv::MayMatchPart(*this, {&c, 1})) return Replace(std::string_view(&c, 1), {});
    return static_cast<int>(std::erase(AsStd(), c));
}

int CString::Insert(int position, std::string_view text) {
    insert(std::min(Count(position), size()), text);
    return GetLength();
}

int CString::Delete(int position, int count) {
    const std::size_t start = std::min(Count(position), size());
    erase(start, Count(count));
    return GetLength();
}

void CString::MakeUpper() {
    AsStd() = qv::platform::ToUpper(*this);
}

void CString::MakeLower() {
    AsStd() = qv::platform::ToLower(*this);
}

void CString::TrimLeft() {
    erase(0, size() - qv::platform::TrimmedLeft(*this).size());
}

void CString::TrimRight() {
    resize(qv::platform::TrimmedRight(*this).size());
}

int CString::CompareNoCase(std::string_view other) const {
    return qv::platform::ToLower(*this).compare(qv::platform::ToLower(other));
}

int CString::Collate(std::string_view other) const {
    return qv::platform::Collate(*this, other);
}

CString CString::Joined(std::string_view a, std::string_view b) {
    std::string text;
    text.reserve(a.size() + b.size());
    return CString(std::move(text.append(a).append(b)));
}
