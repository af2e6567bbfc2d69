#include "qvcommon/HistoryMgr.h"

#include <algorithm>

CHistoryMgr::~CHistoryMgr() = default;

void CHistoryMgr::Reset() {
    m_urls.RemoveAll();
    m_titles.RemoveAll();
    m_current = 0;
    m_pending = -1;
}

void CHistoryMgr::SetMaxLinks(int maxLinks) {
    m_maxLinks = std::max(maxLinks, 0);
    DropOldest();
}

void CHistoryMgr::UpdateHistory(const char* url, const char* title) {
    const CString page(url), name = title ? CString(title) : page;
    if (m_current < Count() && m_urls[m_current] == page) return;
    if (!ConfirmPending(page, name)) Visit(page, name);
    DropOldest();
}

// Returns whether the requested page has arrived. Any other page cancels the request.
bool CHistoryMgr::ConfirmPending(const CString& url, const CString& title) {
    const int pending = std::exchange(m_pending, -1);
    if (pending < 0 || pending >= Count() || !(m_urls[pending] == url)) return false;
    m_titles.SetAt(url, title);
    m_current = pending;
    return true;
}

// A new page discards the forward history; for a known page only the current position changes.
void CHistoryMgr::Visit(const CString& url, const CString& title) {
    const int known = PositionOf(url);
    m_titles.SetAt(url, title);
    if (known >= 0 && m_alwaysNew != 1) {
        m_current = known;
        return;
    }
    if (m_current > 0) m_urls.RemoveAt(0, std::min(m_current, Count()));
    m_current = 0;
    if (m_urls.IsEmpty() || !(m_urls[0] == url)) m_urls.InsertAt(0, url);
}

void CHistoryMgr::DropOldest() {
    if (const int excess = Count() - m_maxLinks; excess > 0) m_urls.RemoveAt(m_maxLinks, excess);
    m_current = std::clamp(m_current, 0, std::max(Count() - 1, 0));
    if (m_pending >= Count()) m_pending = -1;
    if (m_titles.GetCount() <= 2 * Count() + 8) return;
    CMapStringToString titles;  // of the remaining pages
    CString title;
    for (const CString& url : m_urls)
        if (m_titles.Lookup(url, title)) titles.SetAt(url, title);
    m_titles = titles;
}

int CHistoryMgr::PositionOf(const CString& url) const {
    const auto found = std::find(m_urls.begin(), m_urls.end(), url);
    return found == m_urls.end() ? -1 : static_cast<int>(found - m_urls.begin());
}

int CHistoryMgr::HasCurrentUrl() {
    return Count();
}

CString CHistoryMgr::GetCurrentUrl() {
    return m_urls.IsEmpty() ? CString() : m_urls[m_current];
}

BOOL CHistoryMgr::HasBackUrl() {
    return m_current < Count() - 1;
}

BOOL CHistoryMgr::HasForwardUrl() {
    return m_current > 0;
}

CString CHistoryMgr::GetBackUrl() {
    return HasBackUrl() ? Ask(m_current + 1) : CString();
}

CString CHistoryMgr::GetForwardUrl() {
    return HasForwardUrl() ? Ask(m_current - 1) : CString();
}

CString CHistoryMgr::Ask(int position) {
    m_pending = position;
    return m_urls[position];
}

CString CHistoryMgr::GetBackMenuUrl(QvPoint point, HWND window) {
    return Choose(m_current + 1, Count(), point, window);
}

CString CHistoryMgr::GetForwardMenuUrl(QvPoint point, HWND window) {
    return Choose(m_current - 1, -1, point, window);
}

// From the nearest page to the farthest, `to` excluded.
CString CHistoryMgr::Choose(int from, int to, QvPoint point, HWND window) {
    const int step = from < to ? 1 : -1;
    CStringArray texts, urls;
    for (int i = from; i != to && i >= 0 && i < Count(); i += step) {
        CString title;
        urls.Add(m_urls[i]);
        texts.Add(m_titles.Lookup(m_urls[i], title) ? title : m_urls[i]);
    }
    if (texts.IsEmpty()) return {};
    const int chosen = ChooseFromMenu(texts, point, window);
    if (chosen < 0 || chosen >= texts.GetSize()) return {};
    // The history may have changed while the menu was open.
    const int page = from + step * chosen;
    return page < Count() && m_urls[page] == urls[chosen] ? Ask(page) : CString();
}

int CHistoryMgr::ChooseFromMenu(const CStringArray&, QvPoint, HWND) {
    return -1;
}
