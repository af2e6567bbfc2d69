#pragma once

/// @file Checks and transfers of dialog fields, for use in a dialog's data exchange.
///
/// A check does nothing while the dialog is being filled. One that fails while its values are read back tells the user in a
/// message box (style 48) and fails the exchange: the control named last gets the keyboard, and CUserException* is raised.

#include "qvcommon/framework/Window.h"

/// The text must not be empty.
QVCOMMON_API void QVCOMMON_CALL DDV_NotEmpty(CDataExchange* exchange, const CString& text);
/// The path has to exist, as CFileUtils::IsExist says.
QVCOMMON_API void QVCOMMON_CALL DDV_ValidPath(CDataExchange* exchange, const CString& path);
/// The folder has to exist in the end, as ValidateDir says, which offers to make it and has messages of its own.
QVCOMMON_API void QVCOMMON_CALL DDV_ValidDir(CDataExchange* exchange, const CString& folder);
/// The text may hold none of the characters; the first one that it holds is named.
QVCOMMON_API void QVCOMMON_CALL DDV_ReservedChars(CDataExchange* exchange, const CString& text, const char* characters);
/// The text may not hold the word, within other words either, without regard to case.
QVCOMMON_API void QVCOMMON_CALL DDV_ReservedWord(CDataExchange* exchange, const CString& text, const char* word);
/// At least one item has to be checked; the third state is not.
QVCOMMON_API void QVCOMMON_CALL DDV_SomeListItemsChecked(CDataExchange* exchange, const CCheckListBox& list);

/// An edit control that takes some characters only. Attach it to its control, so that the dialog gives it by number.
class QVCOMMON_API CCharacterFilterEdit : public CWnd {
public:
    /// @param character  one whole character, of one byte or more.
    virtual bool IsAccepted(std::string_view character) const = 0;
};

/// The code editor, as far as its text is exchanged.
class QVCOMMON_API CCodeEditCtrl : public CWnd {};

/// Each: DDX_Text and DDX_CBString; then the text is trimmed at both ends, in both directions.
QVCOMMON_API void QVCOMMON_CALL DDX_TrimText(CDataExchange* exchange, int id, CString& text);
QVCOMMON_API void QVCOMMON_CALL DDX_TrimCBString(CDataExchange* exchange, int id, CString& text);

/// Takes away what the control would not accept, then DDX_Text. A control without such a filter accepts everything.
QVCOMMON_API void QVCOMMON_CALL DDX_ExtendedText(CDataExchange* exchange, int id, CString& text);

/// Shows the value in the printf format, and reads it back from the first 32 characters of the control's text. A text that
/// still is what the format makes of the value leaves the value alone, with all its digits. A number has digits with at
/// most a sign, the locale's decimal point and an exponent, and is finite. What is no number is told
/// to the user (the framework's text 0xF111) and fails the exchange. @throws CInvalidArgException* for a format that
/// does not take one real number.
QVCOMMON_API void QVCOMMON_CALL DDX_Text_Display_Formatted(CDataExchange* exchange, int id, double& value,
                                                           const char* format);

/// Between a code editor and a text.
QVCOMMON_API void QVCOMMON_CALL DDX_Text(CDataExchange* exchange, CCodeEditCtrl& control, CString& text);
