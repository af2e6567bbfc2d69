#pragma once

/// @file The message box, and a handler interface to replace it.

#include "qvcommon/Export.h"
#include "qvcommon/framework/Types.h"

/// Shows a text to the user and waits for the response.
class IMessageBox {
public:
    virtual ~IMessageBox() = default;

    /// @param style  buttons (low four bits) and icon (16 stop, 32 question, 48 exclamation, 64 information), as in the
    ///               system's own message box.
    /// @return the button pressed: 1 OK, 2 Cancel, 3 Abort, 4 Retry, 5 Ignore, 6 Yes, 7 No.
    virtual int Show(const char* text, UINT style) = 0;
};

/// Shows a message box through the current handler and returns its result.
///
/// Without a handler, Windows shows the system's own box. Other systems write the text to standard error and return the
/// safest response: OK if available, else No, Cancel or Abort; never Yes.
QVCOMMON_API int QVCOMMON_CALL AfxMessageBox(const char* text, UINT style = 0, UINT helpId = 0);

/// Does the same with one of the framework's texts by number (AfxLoadString); an unknown number shows an empty box.
QVCOMMON_API int QVCOMMON_CALL AfxMessageBox(UINT textId, UINT style = 0, UINT helpId = static_cast<UINT>(-1));

/// Returns the framework's text of a number: 0xF020 "no error message is available", 0xF111 "enter a number"; null if
/// unknown.
QVCOMMON_API const char* QVCOMMON_CALL AfxLoadString(UINT textId);

/// Sets a handler for the whole process, null for the default one, and returns the previous one. Not owned; must
/// outlive its use. Thread-safe.
QVCOMMON_API IMessageBox* QVCOMMON_CALL AfxSetMessageBox(IMessageBox* handler);
