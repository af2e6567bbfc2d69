#include "qvcommon/framework/MessageBox.h"

#include <atomic>

#include "platform/MessageBox.h"

namespace {

std::atomic<IMessageBox*> g_handler = nullptr;

}  // namespace

int AfxMessageBox(const char* text, UINT style, UINT) {
    if (IMessageBox* const handler = g_handler) return handler->Show(text, style);
    return qv::platform::ShowMessageBox(text, style);
}

int AfxMessageBox(UINT textId, UINT style, UINT helpId) {
    const char* const text = AfxLoadString(textId);
    return AfxMessageBox(text ? text : "", style, helpId);
}

const char* AfxLoadString(UINT textId) {
    switch (textId) {
        case 0xF020: return "No error message is available.";
        case 0xF111: return "Please enter a number.";
        default: return nullptr;
    }
}

IMessageBox* AfxSetMessageBox(IMessageBox* handler) {
    return g_handler.exchange(handler);
}
