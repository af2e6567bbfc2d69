#pragma once

/// @file Dialogs, their controls, and the exchange of data between controls and variables. Windows has real windows; on
/// Linux they exist only in memory, invisibly, and behave the same towards a program. A window must be used by the
/// thread that created it.

#include <map>
#include <memory>

#include "qvcommon/framework/String.h"

#pragma push_macro("GetWindowText")  // system headers' macros; the class declares each of their expansions
#undef GetWindowText
#pragma push_macro("SetWindowText")
#undef SetWindowText

/// A window of the system, created elsewhere and attached, or created by Create.
class QVCOMMON_API CWnd : public CObject {
    DECLARE_DYNAMIC(CWnd)

public:
    /// The kinds of windows created by Create.
    enum Kind { dialog, edit, comboBox, listBox };

    CWnd() = default;
    /// Destroys the window if Create created it.
    ~CWnd() override;
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;

    /// Creates a hidden window; `parent` and `id` are a control's dialog and number. Returns false if the system
    /// refuses.
    bool Create(Kind kind, CWnd* parent = nullptr, int id = 0);
    /// Attaches a window that was created elsewhere; GetDlgItem then returns this object for it.
    void Attach(HWND window);
    /// Detaches the window without destroying it, and returns it.
    HWND Detach();

    /// Reads the title of a dialog or the text of a control; empty without a window.
    void GetWindowText(CString& text) const;
    void GetWindowTextA(CString& text) const { GetWindowText(text); }
    void GetWindowTextW(CString& text) const { GetWindowText(text); }
    /// Sets the text returned by GetWindowText. Null means the empty string.
    void SetWindowText(const char* text);
    void SetWindowTextA(const char* text) { SetWindowText(text); }
    void SetWindowTextW(const char* text) { SetWindowText(text); }
    /// Gives it the keyboard focus.
    void SetFocus();

    /// Returns the control with this number: the object attached to it, else one owned by this object. Null if none
    /// exists.
    CWnd* GetDlgItem(int id);

    HWND m_hWnd = nullptr;  ///< null without a window

private:
    bool m_owned = false;
    std::map<int, std::unique_ptr<CWnd>> m_items;
};

#pragma pop_macro("SetWindowText")
#pragma pop_macro("GetWindowText")

/// Returns the application's main window as set by AfxSetMainWnd, null by default. Not owned. Both functions are
/// thread-safe.
QVCOMMON_API CWnd* QVCOMMON_CALL AfxGetMainWnd();
/// Sets the main window; null for none.
QVCOMMON_API void QVCOMMON_CALL AfxSetMainWnd(CWnd* window);

/// A field with a list of strings to choose from.
class QVCOMMON_API CComboBox : public CWnd {
public:
    /// Appends a string to the list.
    void AddString(const char* text);
};

/// A list whose items have check boxes.
class QVCOMMON_API CCheckListBox : public CWnd {
public:
    /// Appends an unchecked item.
    void AddString(const char* text);
    /// Returns the number of items.
    int GetCount() const;
    /// 0 unchecked, 1 checked, 2 indeterminate.
    int GetCheck(int item) const;
    void SetCheck(int item, int check);
};

/// One exchange between a dialog's controls and their variables, in one direction.
class QVCOMMON_API CDataExchange {
public:
    /// @param saveAndValidate  non-zero: from the controls to the variables, which are checked; zero: the other way.
    CDataExchange(CWnd* dialog, BOOL saveAndValidate) : m_bSaveAndValidate(saveAndValidate), m_pDlgWnd(dialog) {}

    /// Selects the control for the next check. @throws CInvalidArgException* if the dialog has no such control.
    HWND PrepareCtrl(int id);
    /// Does the same for an edit control, whose text is selected by Fail.
    HWND PrepareEditCtrl(int id);

    /// Ends the exchange: the last prepared control gets the focus, its text is selected if it is an edit control.
    /// @throws CUserException*, always.
    [[noreturn]] void Fail();

    BOOL m_bSaveAndValidate;           ///< as passed to the constructor
    CWnd* m_pDlgWnd;                   ///< the dialog
    HWND m_hWndLastControl = nullptr;  ///< the last prepared control
    BOOL m_bEditLastControl = 0;       ///< it was prepared by PrepareEditCtrl
};

/// Each: Exchanges the text of an edit control, or of the field of a combo box. A combo box selects its item that
/// begins with the text, if there is one.
QVCOMMON_API void QVCOMMON_CALL DDX_Text(CDataExchange* exchange, int id, CString& text);
QVCOMMON_API void QVCOMMON_CALL DDX_CBString(CDataExchange* exchange, int id, CString& text);
