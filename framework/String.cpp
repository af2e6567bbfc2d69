#include "qvcommon/framework/String.h"

#include <algorithm>

#include "platform/Text.h"

char CString::GetAt(int position) const {
    if (position < 0 || position >= GetLength()) AfxThrowInvalidArgException();
    return m_text[static_cast<std::size_t>(position)];
}

void CString::SetAt(int position, char c) {
    if (position < 0 || position >= GetLength()) AfxThrowInvalidArgException();
    m_text[static_cast<std::size_t>(position)] = c;
}

CString CString::Mid(int first, int count) const {
    const std::size_t start = std::min(Count(first), m_text.size());
    return CString(std::string_view(m_text).substr(start, Count(count)));
}

CString CString::Right(int count) const {
    const std::size_t kept = std::min(Count(count), m_text.size());
    return CString(std::string_view(m_text).substr(m_text.size() - kept));
}

int CString::Find(std::string_view text, int start) const {
    return Position(m_text.find(text, Count(start)));
}

int CString::Replace(std::string_view find, std::string_view replacement) {
    std::size_t hit = find.empty() ? m_text.npos : m_text.find(find);
    if (hit == m_text.npos) return 0;
    std::string out;
    std::size_t from = 0;
    int count = 0;
    for (; hit != m_text.npos; hit = m_text.find(find, from), ++count) {
        out.append(m_text, from, hit - from).append(replacement);
        from = hit + find.size();
    }
    out.append(m_text, from);
    m_text = std::move(out);
    return count;
}

int CString::Replace(char find, char replacement) {
    if (find == replacement) return 0;
    const auto count = std::count(m_text.begin(), m_text.end(), find);
    std::replace(m_text.begin(), m_text.end(), find, replacement);
    return static_cast<int>(count);
}

int CString::Remove(char c) {
    return static_cast<int>(std::erase(m_text, c));
}

int CString::Insert(int position, std::string_view text) {
    m_text.insert(std::min(Count(position), m_text.size()), text);
    return GetLength();
}

int CString::Delete(int position, int count) {
    const std::size_t start = std::min(Count(position), m_text.size());
    m_text.erase(start, Count(count));
    return GetLength();
}

void CString::MakeUpper() {
    m_text = qv::platform::ToUpper(m_text);
}

void CString::MakeLower() {
    m_text = qv::platform::ToLower(m_text);
}

void CString::TrimLeft() {
    m_text.erase(0, m_text.size() - qv::platform::TrimmedLeft(m_text).size());
}

void CString::TrimRight() {
    m_text.resize(qv::platform::TrimmedRight(m_text).size());
}

int CString::CompareNoCase(std::string_view other) const {
    return qv::platform::ToLower(m_text).compare(qv::platform::ToLower(other));
}

int CString::Collate(std::string_view other) const {
    return qv::platform::Collate(m_text, other);
}

CString CString::Joined(std::string_view a, std::string_view b) {
    std::string text;
    text.reserve(a.size() + b.size());
    return CString(std::move(text.append(a).append(b)));
}
