#pragma once

/// @file The navigation history of a view that shows pages by URL.

#include "qvcommon/framework/Collections.h"

/// A point on the screen, in pixels. It has the layout of the system's POINT, and converts implicitly from it.
struct QvPoint {
    LONG x = 0, y = 0;  ///< from the top left corner

    constexpr QvPoint() = default;
    /// From its coordinates.
    constexpr QvPoint(LONG left, LONG top) : x(left), y(top) {}
    /// From the system's POINT, or another type with such members.
    template <class T>
    requires requires(const T& point) { point.x, point.y; }
    constexpr QvPoint(const T& point) : x(point.x), y(point.y) {}
};

/// The visited pages, newest first, the current page, and a pending step back or forward.
///
/// The view calls GetBackUrl or GetForwardUrl, navigates there, and calls UpdateHistory once the page is shown: only
/// then does the position move. If another page is shown instead, it is an ordinary visit, and the step is dropped;
/// showing the current page again changes nothing.
/// Positions count from the newest page: back is up, forward is down. URLs are compared byte by byte. The order of the
/// virtual members is part of the interface. Not thread-safe.
class QVCOMMON_API CHistoryMgr : public CObject {
public:
    CHistoryMgr() = default;
    ~CHistoryMgr() override;

    /// Clears the history.
    virtual void Reset();
    /// Sets the maximum number of pages, 10 by default; the oldest are removed. Less than 1 keeps none.
    virtual void SetMaxLinks(int maxLinks);
    /// Records that a page is shown. The title defaults to the URL.
    virtual void UpdateHistory(const char* url, const char* title = nullptr);
    /// Returns the number of pages.
    virtual int HasCurrentUrl();
    /// Returns the current page; empty if none exists.
    virtual CString GetCurrentUrl();
    /// Returns whether there is an older page.
    virtual BOOL HasBackUrl();
    /// Requests a step back; returns empty, and requests nothing, if there is no older page.
    virtual CString GetBackUrl();
    /// Returns whether there is a newer page.
    virtual BOOL HasForwardUrl();
    /// Requests a step forward; returns empty, and requests nothing, if there is no newer page.
    virtual CString GetForwardUrl();
    /// Each: Offers the older, or newer, pages, the nearest first, by title, and requests the step to the chosen one.
    /// @return its URL; empty if none was chosen.
    virtual CString GetBackMenuUrl(QvPoint point, HWND window);
    virtual CString GetForwardMenuUrl(QvPoint point, HWND window);

    /// 1: a page that is already in the history is added again as a new visit.
    void SetAlwaysNew(int alwaysNew) { m_alwaysNew = alwaysNew; }

protected:
    /// Lets the user choose one of several items in a pop-up menu at a point; returns its index, or -1. The base has no
    /// menus and returns -1: applications override it.
    virtual int ChooseFromMenu(const CStringArray& texts, QvPoint point, HWND window);

private:
    CString Ask(int position);
    CString Choose(int from, int to, QvPoint point, HWND window);
    bool ConfirmPending(const CString& url, const CString& title);
    void Visit(const CString& url, const CString& title);
    void DropOldest();
    int Count() const { return m_urls.GetSize(); }
    int PositionOf(const CString& url) const;

    int m_maxLinks = 10;
    int m_alwaysNew = 0;
    CStringArray m_urls;  // newest first
    int m_current = 0;
    CMapStringToString m_titles;
    int m_pending = -1;
};
