#pragma once

/// @file A sender's side of a conversation with a window of any process.

#include <string>
#include <string_view>

namespace qv::platform::messages {

/// Returns whether the calling thread's last conversation is with this window and still open: the window then exists.
bool IsConversationOpen(const std::string& className);

enum class Outcome {
    Handled,
    Gone,     ///< the window had the text, or a part of it, when it ended
    NotFound  ///< no listener has the name, or it cannot be reached
};

/// Returns once the target's window has handled the text, or is gone. Meanwhile the calling thread's own windows
/// continue to receive messages.
Outcome Send(const std::string& target, const std::string& sender, std::string_view text);

}  // namespace qv::platform::messages
