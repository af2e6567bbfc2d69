#pragma once

/// @file Texts between the running programs of one user, handed over synchronously to listeners that are found by name.

#include <memory>

#include "qvcommon/framework/Window.h"

/// Sends a text, any bytes, up to 64 MB, to a listener's window, and returns when the listener has handled it or is gone. A
/// longer text and a window that is none are passed over in silence.
///
/// While it waits it handles what comes in for listeners of its own thread, so two that send to each other do not block.
/// @param sender  told to the receiver, who may answer it; null names the application's main window (AfxGetMainWnd).
/// Any thread. On Linux only windows of listeners can be targets and senders.
QVCOMMON_API void QVCOMMON_CALL QvSendIpcMessage(HWND target, const char* text, HWND sender = nullptr);
/// The same for a text that may hold zero bytes.
QVCOMMON_API void QVCOMMON_CALL QvSendIpcMessage(HWND target, const CString& text, HWND sender = nullptr);

/// One text as it arrives: the system's copy-data record.
struct CCopyData {
    std::uintptr_t m_tag;  ///< always 0 from this library
    DWORD m_length;        ///< of the data, in bytes
    const void* m_data;    ///< without a terminating zero byte; valid during the call
};

/// A hidden window that takes texts. One of a name exists at most among the programs of a user, also when two make it
/// at the same moment; the name is free again when the listener ends or its program dies.
///
/// The protocol on Linux: docs/formats/messages.md. Other users can neither listen in a user's name, nor send, nor read.
///
/// A listener belongs to the thread that created it. Its texts arrive there, one after the other, while that thread pumps
/// messages: with PumpMessages, on Windows with any message loop, and while it waits for a text of its own to be handled.
/// Senders wait until then.
class QVCOMMON_API CUserMessageListener : public CWnd {
public:
    CUserMessageListener();
    /// Ends the window; senders that are still waiting return. On the thread that created it.
    ~CUserMessageListener() override;

    /// Makes the window. With `perProcess` non-zero the name holds for this process only.
    /// @return non-zero; 0 when one of the name exists already, this object has its window, the name is empty or longer
    /// than 240 bytes, or the system refuses. (On Linux "/", "%" and a leading point count three bytes.)
    int Create(const char* name, int perProcess);

    /// Whether a listener of the name takes texts now: with `perProcess` non-zero one of this process that was created
    /// so, else
    /// one of any program of the user. By the time of a send it may be gone.
    static int DoesListenerExist(const char* name, int perProcess);

    /// QvSendIpcMessage to the listener of the name. 0 when there is none; with `perProcess` only this process's own count.
    static int SendUserMessage(const char* name, int perProcess, const char* text, HWND sender = nullptr);
    static int SendUserMessage(const char* name, int perProcess, const CString& text, HWND sender = nullptr);

    /// Handles what comes in for the calling thread's listeners, for at most so long. Non-zero as soon as something has
    /// been handled; 0 when the time is over. On Windows also 0, at once, when the thread has been asked to end: WM_QUIT
    /// stays in its queue, for the message loop of the program.
    static int PumpMessages(DWORD milliseconds);

    /// One text, with all its bytes. The base does nothing. It may send texts itself, and end the listener.
    ///
    /// What it throws comes out of the PumpMessages, or the send, during which it ran on this thread; the text counts as
    /// handled, and its sender goes on. On Windows, what it throws in a message loop of the program's own comes out of the
    /// thread's next PumpMessages or send.
    virtual void OnUserMessage(const CString& text);

protected:
    /// "name", or "name-12345" with the process's number.
    static CString GetWindowClassName(const char* name, int perProcess);
    /// Makes a text of the record and hands it to OnUserMessage.
    virtual void OnCopyData(HWND sender, const CCopyData& data);

private:
    class Receiver;
    std::unique_ptr<Receiver> m_receiver;
};
