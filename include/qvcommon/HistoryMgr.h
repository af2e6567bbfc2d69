#pragma once

/// @file The history of a view that shows pages by URL.

#include "qvcommon/framework/Collections.h"

/// A point of the screen, in pixels. It has the layout of the system's POINT, and one of those turns into it by itself.
struct QvPoint {
    LONG x = 0, y = 0;  ///< from the top left corner

    constexpr QvPoint() = default;
    /// From its two parts.
    constexpr QvPoint(LONG left, LONG top) : x(left), y(top) {}
    /// From the system's POINT, or another type with such members.
    template <class T>
    requires requires(const T& point) { point.x, point.y; }
    constexpr QvPoint(const T& point) : x(point.x), y(point.y) {}
};

/// The pages visited, newest first, the one that is shown, and a step back or forward that was asked for.
///
/// The view asks GetBackUrl or GetForwardUrl, goes there, and calls UpdateHistory once the page is shown: only then
/// does the position move. A page that comes instead is an ordinary visit, and the step is forgotten. Positions count
/// from the newest page: back is up, forward is down. URLs are compared byte by byte. The order of the virtual members
/// is part of the interface. One object, one thread.
class QVCOMMON_API CHistoryMgr : public CObject {
public:
    CHistoryMgr() = default;
    ~CHistoryMgr() override;

    /// Empties the history.
    virtual void Reset();
    /// The most pages that are kept, 10 at first; the oldest go. Less than 1 keeps none.
    virtual void SetMaxLinks(int maxLinks);
    /// A page is shown. Without a title its URL serves as one.
    virtual void UpdateHistory(const char* url, const char* title = nullptr);
    /// The number of pages.
    virtual int HasCurrentUrl();
    /// The page that is shown; empty when there is none.
    virtual CString GetCurrentUrl();
    /// Whether there is an older page to go to.
    virtual BOOL HasBackUrl();
    /// Asks for the step; empty, and nothing asked for, when there is no such page.
    virtual CString GetBackUrl();
    /// Whether there is a newer page to go to.
    virtual BOOL HasForwardUrl();
    /// Asks for the step; empty, and nothing asked for, when there is no such page.
    virtual CString GetForwardUrl();
    /// Each: Offer the older, or newer, pages, the nearest first, by title, and ask for the step to the chosen one.
    /// @return its URL; empty when none was chosen.
    virtual CString GetBackMenuUrl(QvPoint point, HWND window);
    virtual CString GetForwardMenuUrl(QvPoint point, HWND window);

    /// 1: a page that is in the history already is a new visit nevertheless, and stands in it twice.
    void SetAlwaysNew(int alwaysNew) { m_alwaysNew = alwaysNew; }

protected:
    /// Lets the user choose one of some texts in a pop-up menu at a point: its index, or -1. The base has no menus and
    /// chooses nothing: applications override it.
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
