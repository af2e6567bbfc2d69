#pragma once

/// @file Strings sent between the running programs of one user, synchronously, to listeners that are found by name.

#include <memory>

#include "qvcommon/framework/Window.h"

/// Sends a string of any bytes, up to 64 MB, to a listener's window, and returns when the listener has handled it or is
/// gone. Silently ignores longer strings and invalid windows.
///
/// While waiting it handles messages for listeners of its own thread, so two that send to each other do not deadlock.
/// Thread-safe. On Linux only windows of listeners can be targets and senders.
/// @param sender  passed to the receiver, which may reply to it; null means the application's main window
/// (AfxGetMainWnd).
QVCOMMON_API void QVCOMMON_CALL QvSendIpcMessage(HWND target, const char* text, HWND sender = nullptr);
/// Does the same for a string that may contain zero bytes.
QVCOMMON_API void QVCOMMON_CALL QvSendIpcMessage(HWND target, const CString& text, HWND sender = nullptr);

/// A string on arrival: the system's copy-data record.
struct CCopyData {
    std::uintptr_t m_tag;  ///< always 0 from this library
    DWORD m_length;        ///< of the data, in bytes
    const void* m_data;    ///< without a terminating zero byte; valid during the call
};

/// A hidden window that receives strings. At most one of a name exists among the programs of a user, even if two create
/// it at the same moment; the name is free again when the listener is destroyed or its program terminates.
///
/// docs/formats/messages.md describes the protocol on Linux. There a listener that continues to run after the user's
/// last session has ended is no longer found, and its name is free. Other users can neither listen in a user's name, nor send,
/// nor read. On Windows programs without elevation may send to an elevated listener.
///
/// A listener belongs to the thread that created it. Its strings arrive there, one after the other, while that thread
/// pumps messages: with PumpMessages, on Windows with any message loop, and while it waits for a string of its own to
/// be handled. Senders wait until then.
class QVCOMMON_API CUserMessageListener : public CWnd {
public:
    CUserMessageListener();
    /// Destroys the window; waiting senders return. Must be called on the thread that created it.
    ~CUserMessageListener() override;

    /// Creates the window. With `perProcess` non-zero the name is local to this process.
    /// @return non-zero; 0 if the name is in use, this object already has a window, the name is empty or longer than
    /// 240 bytes, or the system refuses. (On Linux "/", "%", a leading dot and the dot of a final ".lock" count three
    /// bytes. On Windows names that differ only in case are the same.)
    int Create(const char* name, int perProcess);

    /// Returns whether a listener of the name is active: with `perProcess` non-zero one of this process that was
    /// created so, else one of any program of the user. It may be gone before a later send.
    static int DoesListenerExist(const char* name, int perProcess);

    /// Calls QvSendIpcMessage for the listener of the name. Returns 0 if none exists; with `perProcess` non-zero only
    /// listeners of this process are considered.
    static int SendUserMessage(const char* name, int perProcess, const char* text, HWND sender = nullptr);
    static int SendUserMessage(const char* name, int perProcess, const CString& text, HWND sender = nullptr);

    /// Handles messages for the calling thread's listeners, for at most the given time. Returns non-zero as soon as one
    /// has been handled; 0 after the time. On Windows also 0, at once, if the thread has been asked to end: WM_QUIT
    /// remains in its queue, for the message loop of the program.
    static int PumpMessages(DWORD milliseconds);

    /// Called with each string, including all its bytes. The base does nothing. It may send strings itself, and destroy
    /// the listener.
    ///
    /// Exceptions leave the PumpMessages, or the send, during which it ran on this thread; the string counts as
    /// handled, and its sender continues. On Windows, an exception thrown in a message loop of the program leaves the
    /// thread's next PumpMessages or send.
    virtual void OnUserMessage(const CString& text);

protected:
    /// Returns "name", or "name-12345" with the process id.
    static CString GetWindowClassName(const char* name, int perProcess);
    /// Converts the record to a string and passes it to OnUserMessage.
    virtual void OnCopyData(HWND sender, const CCopyData& data);

private:
    class Receiver;
    std::unique_ptr<Receiver> m_receiver;
};
