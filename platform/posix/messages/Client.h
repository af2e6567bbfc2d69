#pragma once

/// @file A sender's side of a conversation with a window of any process.

#include <string>
#include <string_view>

namespace qv::platform::messages {

/// Whether the calling thread's last conversation is with this window and still open: the window exists then.
bool IsConversationOpen(const std::string& className);

/// Returns when the target's window has handled the text, or is gone; false when it is gone or cannot be reached.
/// Meanwhile the calling thread's own windows go on taking messages.
bool Send(const std::string& target, const std::string& sender, std::string_view text);

}  // namespace qv::platform::messages
