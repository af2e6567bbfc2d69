#include "platform/Window.h"

#include "platform/windows/System.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {
namespace {

struct Style {
    const wchar_t* className;
    DWORD bits;
};

Style StyleOf(WindowKind kind) {
    switch (kind) {
        case WindowKind::Edit: return {L"EDIT", WS_CHILD | WS_TABSTOP | ES_AUTOHSCROLL};
        case WindowKind::ComboBox: return {L"COMBOBOX", WS_CHILD | WS_TABSTOP | CBS_DROPDOWN | CBS_AUTOHSCROLL};
        case WindowKind::ListBox: return {L"LISTBOX", WS_CHILD | WS_TABSTOP | LBS_NOTIFY};
        default: return {L"#32770", WS_POPUP | WS_CAPTION};  // the class of the system's dialogs
    }
}

// -1, which is CB_ERR and LB_ERR, if the control rejects the message or cannot be reached.
LRESULT Send(WindowHandle window, UINT message, WPARAM first, LPARAM second) {
    const auto sent = sys::SendMessageW(window, message, first, second);
    return sent.ok() ? sent.value() : LB_ERR;
}

LRESULT SendText(WindowHandle window, UINT message, WPARAM first, const std::string& text) {
    return Send(window, message, first, reinterpret_cast<LPARAM>(ToSystem(text).c_str()));
}

}  // namespace

WindowHandle MakeWindow(WindowKind kind, WindowHandle dialog, int id) {
    const Style style = StyleOf(kind);
    constexpr int kWidth = 200, kHeight = 100;
    return sys::CreateWindowExW(0, style.className, L"", style.bits, 0, 0, kWidth, kHeight, dialog,
                                reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr)
        .value();
}

void EndWindow(WindowHandle window) {
    sys::DestroyWindow(window).IgnoreError();  // fails if the window is already gone
}

WindowHandle ControlOf(WindowHandle dialog, int id) {
    return sys::GetDlgItem(dialog, id).value();
}

std::string TextOf(WindowHandle window) {
    std::wstring text(static_cast<std::size_t>(sys::GetWindowTextLengthW(window).value()), L'\0');
    const auto length = sys::GetWindowTextW(window, text.data(), static_cast<int>(text.size()) + 1);
    text.resize(static_cast<std::size_t>(length.value()));
    return FromSystem(text);
}

void PutText(WindowHandle window, const std::string& text) {
    // A window that rejects the text keeps the old one.
    sys::SetWindowTextW(window, ToSystem(text).c_str()).IgnoreError();
}

void ChooseText(WindowHandle comboBox, const std::string& text) {
    const auto everyItem = static_cast<WPARAM>(-1);
    const bool chosen = !text.empty() && SendText(comboBox, CB_SELECTSTRING, everyItem, text) != CB_ERR;
    if (!chosen) PutText(comboBox, text);
}

void FocusOn(WindowHandle window, bool markAll) {
    sys::SetFocus(window).IgnoreError();  // the system may refuse to move the focus
    if (markAll) Send(window, EM_SETSEL, 0, -1);
}

WindowHandle FocusedWindow() {
    return ::GetFocus();
}

void AddItem(WindowHandle box, WindowKind kind, const std::string& text) {
    SendText(box, kind == WindowKind::ComboBox ? CB_ADDSTRING : LB_ADDSTRING, 0, text);
}

int ItemCount(WindowHandle listBox) {
    const LRESULT count = Send(listBox, LB_GETCOUNT, 0, 0);
    return count == LB_ERR ? 0 : static_cast<int>(count);
}

void SetItemData(WindowHandle listBox, int item, std::intptr_t data) {
    Send(listBox, LB_SETITEMDATA, static_cast<WPARAM>(item), data);
}

std::intptr_t ItemData(WindowHandle listBox, int item) {
    if (item < 0 || item >= ItemCount(listBox)) return 0;
    return Send(listBox, LB_GETITEMDATA, static_cast<WPARAM>(item), 0);
}

}  // namespace qv::platform
