#pragma once

/// @file Dialogs, their controls, and the exchange of data between controls and variables. Windows has real windows; on
/// Linux they live in memory, unseen, and behave the same towards a program. A window belongs to the thread that made it.

#include <map>
#include <memory>

#include "qvcommon/framework/String.h"

#pragma push_macro("GetWindowText")  // system headers' macros; the class declares each of their expansions
#undef GetWindowText
#pragma push_macro("SetWindowText")
#undef SetWindowText

/// A window of the system, made elsewhere and attached, or made by Create.
class QVCOMMON_API CWnd : public CObject {
    DECLARE_DYNAMIC(CWnd)

public:
    /// What Create makes.
    enum Kind { dialog, edit, comboBox, listBox };

    CWnd() = default;
    /// Ends the window if Create made it.
    ~CWnd() override;
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;

    /// Makes a window that is not shown; a control gets its dialog and its number there. False when the system refuses.
    bool Create(Kind kind, CWnd* parent = nullptr, int id = 0);
    /// Stands for a window that was made elsewhere from now on; the object that GetDlgItem then gives for it.
    void Attach(HWND window);
    /// Ends that; the window itself lives on. Returns it.
    HWND Detach();

    /// The title of a dialog or the text of a control; empty without a window.
    void GetWindowText(CString& text) const;
    void GetWindowTextA(CString& text) const { GetWindowText(text); }
    void GetWindowTextW(CString& text) const { GetWindowText(text); }
    /// Sets what GetWindowText returns. Null is the empty text.
    void SetWindowText(const char* text);
    void SetWindowTextA(const char* text) { SetWindowText(text); }
    void SetWindowTextW(const char* text) { SetWindowText(text); }
    /// Gives it the keyboard.
    void SetFocus();

    /// The control of this number: the object attached to it, else one that this object keeps for it. Null when there is
    /// none.
    CWnd* GetDlgItem(int id);

    HWND m_hWnd = nullptr;  ///< null without a window

private:
    bool m_owned = false;
    std::map<int, std::unique_ptr<CWnd>> m_items;
};

#pragma pop_macro("SetWindowText")
#pragma pop_macro("GetWindowText")

/// The application's main window: the object that AfxSetMainWnd named last, null at first. The caller keeps its life. Both
/// are for any thread.
QVCOMMON_API CWnd* QVCOMMON_CALL AfxGetMainWnd();
/// Names the main window; null for none.
QVCOMMON_API void QVCOMMON_CALL AfxSetMainWnd(CWnd* window);

/// A field with a list of texts to choose from.
class QVCOMMON_API CComboBox : public CWnd {
public:
    /// Adds a text at the end of the list.
    void AddString(const char* text);
};

/// A list whose items have a check box each.
class QVCOMMON_API CCheckListBox : public CWnd {
public:
    /// Adds an item at the end, not checked.
    void AddString(const char* text);
    /// The number of items.
    int GetCount() const;
    /// 0 not checked, 1 checked, 2 neither.
    int GetCheck(int item) const;
    void SetCheck(int item, int check);
};

/// One exchange between a dialog's controls and the variables behind them, in one direction.
class QVCOMMON_API CDataExchange {
public:
    /// @param saveAndValidate  non-zero: from the controls to the variables, which are checked; zero: the other way.
    CDataExchange(CWnd* dialog, BOOL saveAndValidate) : m_bSaveAndValidate(saveAndValidate), m_pDlgWnd(dialog) {}

    /// Names the control that the next check is about. @throws CInvalidArgException* when the dialog has none such.
    HWND PrepareCtrl(int id);
    /// The same for one whose text Fail marks.
    HWND PrepareEditCtrl(int id);

    /// Ends the exchange: the control named last gets the keyboard, its text marked if it is an edit control.
    /// @throws CUserException*, always.
    [[noreturn]] void Fail();

    BOOL m_bSaveAndValidate;           ///< as the constructor got it
    CWnd* m_pDlgWnd;                   ///< the dialog
    HWND m_hWndLastControl = nullptr;  ///< the control named last
    BOOL m_bEditLastControl = 0;       ///< it was named by PrepareEditCtrl
};

/// Each: Between an edit control, or the field of a combo box, and a text. A combo box takes its item that begins with
/// the text, if there is one.
QVCOMMON_API void QVCOMMON_CALL DDX_Text(CDataExchange* exchange, int id, CString& text);
QVCOMMON_API void QVCOMMON_CALL DDX_CBString(CDataExchange* exchange, int id, CString& text);
