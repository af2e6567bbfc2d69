#pragma once

/// @file Observing what a walk through a tree of folders leaves out.

#include "qvcommon/framework/String.h"

/// An item that a walk has left out, and why.
struct QVCOMMON_API QvLeftOut {
    /// Why an item was left out.
    enum Cause {
        failed,        ///< it could not be read, created, written or deleted: `error` says why
        vanished,      ///< it had disappeared when it was to be processed
        brokenLink,    ///< a dangling link
        linkedFolder,  ///< a link to a folder: walks do not follow those
        device         ///< a device, pipe or socket: walks do not read those
    };

    CString path;          ///< of the file or folder, in the library's form
    Cause cause = failed;  ///< the cause, which `reason` describes
    DWORD error = 0;       ///< the system's error number; 0 if there was no error
    CString reason;        ///< description of the cause: the system's message for `error`, without a newline

    /// Returns `failed`; if the error means that the name does not exist, `brokenLink` for a link and `vanished`
    /// otherwise.
    static QvLeftOut OfError(const CString& path, DWORD error, bool isLink = false);
    /// Returns one of the causes for which the system has no number.
    static QvLeftOut OfCause(const CString& path, Cause cause);
};

/// Receives what a walk leaves out. It is called on the walk's thread, in the order of the walk, and must not change
/// the walking object. An exception raised in it ends the walk and is passed to the walk's caller.
class QVCOMMON_API ILeftOut {
public:
    virtual ~ILeftOut();
    /// Called once for each item; the record is valid during the call.
    virtual void OnLeftOut(const QvLeftOut& entry) = 0;
};
