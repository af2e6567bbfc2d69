#pragma once

/// @file What a walk through a tree of folders leaves out, for those who want to hear of it.

#include "qvcommon/framework/String.h"

/// Something that a walk has left out, and why.
struct QVCOMMON_API QvLeftOut {
    /// Why something was left out.
    enum Cause {
        failed,        ///< it could not be read, made, written or deleted: `error` says why
        vanished,      ///< it was gone when its turn came
        brokenLink,    ///< a link that leads nowhere
        linkedFolder,  ///< a link to a folder: walks do not enter those
        device         ///< a device, pipe or socket: walks do not read those
    };

    CString path;          ///< of the file or folder, in the library's form
    Cause cause = failed;  ///< as the reason says in words
    DWORD error = 0;       ///< the system's number; 0 where the system refused nothing
    CString reason;        ///< the cause in words: the system's message for `error`, without a line end

    /// `failed`; where the number means that nothing has this name, `brokenLink` for a link and `vanished` otherwise.
    static QvLeftOut OfError(const CString& path, DWORD error, bool isLink = false);
    /// One of the causes that the system has no number for.
    static QvLeftOut OfCause(const CString& path, Cause cause);
};

/// Receives what a walk leaves out. It is called on the walk's thread, in the order of the walk, and may not change the
/// object that walks. An exception raised in it ends the walk and goes to the walk's caller.
class QVCOMMON_API ILeftOut {
public:
    virtual ~ILeftOut();
    /// Called once for each thing left out; the record is valid during the call.
    virtual void OnLeftOut(const QvLeftOut& entry) = 0;
};
