#include "platform/MessageWindow.h"

#include <chrono>

#include "platform/Clock.h"
#include "platform/posix/messages/Client.h"
#include "platform/posix/messages/Names.h"
#include "platform/posix/messages/Server.h"
#include "platform/posix/messages/Waiting.h"

namespace qv::platform {

using namespace messages;

WindowHandle OpenMessageWindow(const std::string& className, MessageReceiver& receiver) {
    const auto server = Server::Open(className, receiver);
    if (!server) return nullptr;
    OwnServers().push_back(server);
    return HandleOf(className);
}

void CloseMessageWindow(WindowHandle window) {
    const auto server = OwnServer(NameOf(window));
    if (!server) return;
    server->Close();
    std::erase(OwnServers(), server);
}

WindowHandle FindMessageWindow(const std::string& className) {
    if (IsConversationOpen(className)) return HandleOf(className);
    const std::string path = SocketPath(className);
    return !path.empty() && IsNameOwned(path) ? HandleOf(className) : nullptr;
}

bool SendMessageText(WindowHandle window, std::string_view text, WindowHandle sender) {
    const std::string target = NameOf(window);
    if (target.empty() || text.size() > kLongestMessage) return false;
    if (const auto own = OwnServer(target)) {
        own->Receiver().OnMessage(sender, 0, text);
        return true;
    }
    return Send(target, NameOf(sender), text) == Outcome::Handled;
}

bool FindAndSend(const std::string& className, std::string_view text, WindowHandle sender) {
    if (text.size() > kLongestMessage) return FindMessageWindow(className) != nullptr;
    if (OwnServer(className)) return SendMessageText(HandleOf(className), text, sender);
    return Send(className, NameOf(sender), text) != Outcome::NotFound;
}

bool PumpMessages(std::uint32_t milliseconds) {
    const auto end = SteadyNow() + std::chrono::milliseconds(milliseconds);
    return WaitFor(-1, 0, end) == WokenBy::Message;
}

}  // namespace qv::platform
