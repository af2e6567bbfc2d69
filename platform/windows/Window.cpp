#include "platform/Window.h"

#include "platform/windows/System.h"

namespace qv::platform {
namespace {

struct Style {
    const char* className;
    DWORD bits;
};

Style StyleOf(WindowKind kind) {
    switch (kind) {
        case WindowKind::Edit: return {"EDIT", WS_CHILD | WS_TABSTOP | ES_AUTOHSCROLL};
        case WindowKind::ComboBox: return {"COMBOBOX", WS_CHILD | WS_TABSTOP | CBS_DROPDOWN | CBS_AUTOHSCROLL};
        case WindowKind::ListBox: return {"LISTBOX", WS_CHILD | WS_TABSTOP | LBS_NOTIFY};
        default: return {"#32770", WS_POPUP | WS_CAPTION};  // the class of the system's dialogs
    }
}

LPARAM Text(const std::string& text) {
    return reinterpret_cast<LPARAM>(text.c_str());
}

// -1, which is CB_ERR and LB_ERR, when the control refuses the message or cannot be reached.
LRESULT Send(WindowHandle window, UINT message, WPARAM first, LPARAM second) {
    const auto sent = sys::SendMessageA(window, message, first, second);
    return sent.ok() ? sent.value() : LB_ERR;
}

}  // namespace

WindowHandle MakeWindow(WindowKind kind, WindowHandle dialog, int id) {
    const Style style = StyleOf(kind);
    constexpr int kWidth = 200, kHeight = 100;
    return sys::CreateWindowExA(0, style.className, "", style.bits, 0, 0, kWidth, kHeight, dialog,
                                reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr)
        .value();
}

void EndWindow(WindowHandle window) {
    sys::DestroyWindow(window).IgnoreError();  // fails when the window is gone already
}

WindowHandle ControlOf(WindowHandle dialog, int id) {
    return sys::GetDlgItem(dialog, id).value();
}

std::string TextOf(WindowHandle window) {
    std::string text(static_cast<std::size_t>(sys::GetWindowTextLengthA(window).value()), '\0');
    const auto length = sys::GetWindowTextA(window, text.data(), static_cast<int>(text.size()) + 1);
    text.resize(static_cast<std::size_t>(length.value()));
    return text;
}

void PutText(WindowHandle window, const std::string& text) {
    // A window that takes no text keeps what it shows.
    sys::SetWindowTextA(window, text.c_str()).IgnoreError();
}

void ChooseText(WindowHandle comboBox, const std::string& text) {
    const auto everyItem = static_cast<WPARAM>(-1);
    const bool chosen = !text.empty() && Send(comboBox, CB_SELECTSTRING, everyItem, Text(text)) != CB_ERR;
    if (!chosen) PutText(comboBox, text);
}

void FocusOn(WindowHandle window, bool markAll) {
    sys::SetFocus(window).IgnoreError();  // the system may keep the keyboard where it is
    if (markAll) Send(window, EM_SETSEL, 0, -1);
}

WindowHandle FocusedWindow() {
    return ::GetFocus();
}

void AddItem(WindowHandle box, WindowKind kind, const std::string& text) {
    Send(box, kind == WindowKind::ComboBox ? CB_ADDSTRING : LB_ADDSTRING, 0, Text(text));
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
