#pragma once

/// @file Hidden windows that take texts from other programs of the same user, found by the name of their class.
///
/// Windows has windows. On Linux a window is a Unix socket named by the class, in a folder that only the user may enter
/// (/run/user/UID/qvcommon, or /tmp/qvcommon-UID where there is no such), beside a file whose lock lasts as long as the
/// window: the name of a window that died is free. Both ends make sure that the other is the same user's.
///
/// On every system a window's texts arrive on the thread that opened it, while that thread pumps messages or itself waits
/// for a text of its own to be handled.

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/WindowHandle.h"

namespace qv::platform {

/// Longer names of classes are refused, in bytes; on Linux "/", "%" and a leading point count three.
inline constexpr std::size_t kLongestClassName = 240;
/// Longer texts are not sent, and not taken.
inline constexpr std::size_t kLongestMessage = 64 << 20;

class MessageReceiver {
public:
    virtual ~MessageReceiver() = default;
    /// What it throws comes out of the PumpMessages or the send during which it ran. On Windows, where the program's own
    /// message loop ran it, out of the thread's next one.
    /// @param tag  0 for texts sent from here; other programs on Windows may send other ones.
    virtual void OnMessage(WindowHandle sender, std::uintptr_t tag, std::string_view text) = 0;
};

/// Null when there is such a window already, on any thread of any program of the user, or the system refuses. The receiver
/// has to outlive the window.
WindowHandle OpenMessageWindow(const std::string& className, MessageReceiver& receiver);
/// On the thread that opened it. Who is waiting for it to handle a text waits no longer.
void CloseMessageWindow(WindowHandle window);

/// Null when there is none.
WindowHandle FindMessageWindow(const std::string& className);

/// Returns when the window has handled the text, or is gone; false when it is gone or could not be reached.
bool SendMessageText(WindowHandle window, std::string_view text, WindowHandle sender);

/// FindMessageWindow and SendMessageText in one: whether there was such a window, which has handled the text or is gone by
/// now. A text that is too long is not sent.
bool FindAndSend(const std::string& className, std::string_view text, WindowHandle sender);

/// Handles what comes in for the calling thread's windows: returns true once something has been handled, false when the
/// time is over, and on Windows when the thread has been asked to end (WM_QUIT), which stays in its queue.
bool PumpMessages(std::uint32_t milliseconds);

}  // namespace qv::platform
