#include "qvcommon/UserMessages.h"

#include "platform/MessageWindow.h"
#include "platform/Process.h"

namespace platform = qv::platform;

namespace {

HWND OrMainWindow(HWND sender) {
    const CWnd* const main = sender ? nullptr : AfxGetMainWnd();  // which another thread may change
    return main ? main->m_hWnd : sender;
}

}  // namespace

class CUserMessageListener::Receiver : public platform::MessageReceiver {
public:
    explicit Receiver(CUserMessageListener& listener) : m_listener(listener) {}

    void OnMessage(HWND sender, std::uintptr_t tag, std::string_view text) override {
        m_listener.OnCopyData(sender, {tag, static_cast<DWORD>(text.size()), text.data()});
    }

private:
    CUserMessageListener& m_listener;
};

void QvSendIpcMessage(HWND target, const char* text, HWND sender) {
    QvSendIpcMessage(target, CString(text), sender);
}

void QvSendIpcMessage(HWND target, const CString& text, HWND sender) {
    platform::SendMessageText(target, text, OrMainWindow(sender));
}

CUserMessageListener::CUserMessageListener() : m_receiver(std::make_unique<Receiver>(*this)) {}

CUserMessageListener::~CUserMessageListener() {
    if (const HWND window = Detach()) platform::CloseMessageWindow(window);
}

int CUserMessageListener::Create(const char* name, int perProcess) {
    if (m_hWnd) return 0;
    const HWND window = platform::OpenMessageWindow(GetWindowClassName(name, perProcess).AsStd(), *m_receiver);
    if (!window) return 0;
    Attach(window);
    return 1;
}

int CUserMessageListener::DoesListenerExist(const char* name, int perProcess) {
    return platform::FindMessageWindow(GetWindowClassName(name, perProcess).AsStd()) != nullptr;
}

int CUserMessageListener::SendUserMessage(const char* name, int perProcess, const char* text, HWND sender) {
    return SendUserMessage(name, perProcess, CString(text), sender);
}

int CUserMessageListener::SendUserMessage(const char* name, int perProcess, const CString& text, HWND sender) {
    return platform::FindAndSend(GetWindowClassName(name, perProcess).AsStd(), text, OrMainWindow(sender));
}

int CUserMessageListener::PumpMessages(DWORD milliseconds) {
    return platform::PumpMessages(milliseconds);
}

void CUserMessageListener::OnUserMessage(const CString&) {}

CString CUserMessageListener::GetWindowClassName(const char* name, int perProcess) {
    CString className(name);
    if (perProcess) className.Format("%s-%d", name, platform::CurrentProcessId());
    return className;
}

void CUserMessageListener::OnCopyData(HWND, const CCopyData& data) {
    OnUserMessage(CString(std::string_view(static_cast<const char*>(data.m_data), data.m_length)));
}
