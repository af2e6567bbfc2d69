#pragma once

/// @file Validation and transfer of dialog fields, for use in a dialog's data exchange.
///
/// Validations are no-ops while the dialog is being filled. One that fails while its values are read shows a message
/// box (style 48) and fails the exchange: the last named control gets the focus, and CUserException* is raised.

#include "qvcommon/framework/Window.h"

/// The text must not be empty.
QVCOMMON_API void QVCOMMON_CALL DDV_NotEmpty(CDataExchange* exchange, const CString& text);
/// The path must exist, as defined by CFileUtils::IsExist.
QVCOMMON_API void QVCOMMON_CALL DDV_ValidPath(CDataExchange* exchange, const CString& path);
/// The folder must finally exist: calls ValidateDir, which offers to create it and shows messages of its own.
QVCOMMON_API void QVCOMMON_CALL DDV_ValidDir(CDataExchange* exchange, const CString& folder);
/// The text must not contain any of the characters; the message names the first one found.
QVCOMMON_API void QVCOMMON_CALL DDV_ReservedChars(CDataExchange* exchange, const CString& text, const char* characters);
/// The text must not contain the word, even within other words, ignoring case.
QVCOMMON_API void QVCOMMON_CALL DDV_ReservedWord(CDataExchange* exchange, const CString& text, const char* word);
/// At least one item must be checked; the indeterminate state does not count.
QVCOMMON_API void QVCOMMON_CALL DDV_SomeListItemsChecked(CDataExchange* exchange, const CCheckListBox& list);

/// An edit control that accepts only some characters. Attach it to its control, so that the dialog returns it by its
/// id.
class QVCOMMON_API CCharacterFilterEdit : public CWnd {
public:
    /// @param character  one whole character, of one byte or more.
    virtual bool IsAccepted(std::string_view character) const = 0;
};

/// The code editor, as far as needed to exchange its text.
class QVCOMMON_API CCodeEditCtrl : public CWnd {};

/// Each: DDX_Text and DDX_CBString, trimming the text at both ends, in both directions.
QVCOMMON_API void QVCOMMON_CALL DDX_TrimText(CDataExchange* exchange, int id, CString& text);
QVCOMMON_API void QVCOMMON_CALL DDX_TrimCBString(CDataExchange* exchange, int id, CString& text);

/// Removes what the control would not accept, then calls DDX_Text. A control without a filter accepts everything.
QVCOMMON_API void QVCOMMON_CALL DDX_ExtendedText(CDataExchange* exchange, int id, CString& text);

/// Shows the value in the printf format, and reads it from the first 32 characters of the control's text. If the text
/// is still what the format produces for the value, the value keeps its full precision. A number consists of digits
/// with an optional sign, the locale's decimal point and an exponent, and is finite. Anything else shows a message (the
/// framework's text 0xF111) and fails the exchange. @throws CInvalidArgException* for a format that does not take one
/// real number.
QVCOMMON_API void QVCOMMON_CALL DDX_Text_Display_Formatted(CDataExchange* exchange, int id, double& value,
                                                           const char* format);

/// Exchanges the text of a code editor.
QVCOMMON_API void QVCOMMON_CALL DDX_Text(CDataExchange* exchange, CCodeEditCtrl& control, CString& text);
