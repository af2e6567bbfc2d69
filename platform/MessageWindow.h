#pragma once

/// @file Hidden windows that receive texts from other programs of the same user, found by the name of their class.
///
/// On Windows they are windows. On Linux a window is a Unix socket named by the class, in a folder that only the user
/// may enter (/run/user/UID/qvcommon, or /tmp/qvcommon-UID if /run/user/UID does not exist), beside a file that is
/// locked as long as the window exists: the name of a dead window is free. Both ends verify that the other belongs to
/// the same user.
///
/// On every system a window's texts arrive on the thread that opened it, while that thread pumps messages or itself
/// waits for a text of its own to be handled.

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/WindowHandle.h"

namespace qv::platform {

/// Maximum length of class names in bytes; on Linux "/", "%", a leading dot and the dot of a final ".lock"
/// count three.
inline constexpr std::size_t kLongestClassName = 240;
/// Longer texts are neither sent nor received.
inline constexpr std::size_t kLongestMessage = 64 << 20;

class MessageReceiver {
public:
    virtual ~MessageReceiver() = default;
    /// Exceptions leave the PumpMessages or the send during which it ran. On Windows, if the program's own message loop
    /// ran it, the thread's next one.
    /// @param tag  0 for texts sent from here; other programs on Windows may send other values.
    virtual void OnMessage(WindowHandle sender, std::uintptr_t tag, std::string_view text) = 0;
};

/// Returns null if such a window already exists, on any thread of any program of the user, or the system refuses. The
/// receiver is not owned; it must outlive the window.
WindowHandle OpenMessageWindow(const std::string& className, MessageReceiver& receiver);
/// Must be called on the thread that opened it. Threads waiting for it to handle a text return.
void CloseMessageWindow(WindowHandle window);

/// Returns null if it does not exist.
WindowHandle FindMessageWindow(const std::string& className);

/// Returns once the window has handled the text, or is gone; false if it is gone or could not be reached.
bool SendMessageText(WindowHandle window, std::string_view text, WindowHandle sender);

/// Combines FindMessageWindow and SendMessageText: returns whether the window existed; it has then handled the text or
/// is gone. A text that is too long is not sent.
bool FindAndSend(const std::string& className, std::string_view text, WindowHandle sender);

/// Handles messages for the calling thread's windows: returns true once one has been handled, false on timeout, and on
/// Windows if the thread has been asked to end (WM_QUIT), which remains in its queue.
bool PumpMessages(std::uint32_t milliseconds);

}  // namespace qv::platform
