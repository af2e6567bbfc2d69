#include "platform/Window.h"

#include <windows.h>

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

}  // namespace

WindowHandle MakeWindow(WindowKind kind, WindowHandle dialog, int id) {
    const Style style = StyleOf(kind);
    constexpr int kWidth = 200, kHeight = 100;
    return ::CreateWindowExA(0, style.className, "", style.bits, 0, 0, kWidth, kHeight, dialog,
                             reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
}

void EndWindow(WindowHandle window) {
    ::DestroyWindow(window);
}

WindowHandle ControlOf(WindowHandle dialog, int id) {
    return ::GetDlgItem(dialog, id);
}

std::string TextOf(WindowHandle window) {
    std::string text(static_cast<std::size_t>(::GetWindowTextLengthA(window)), '\0');
    const int length = ::GetWindowTextA(window, text.data(), static_cast<int>(text.size()) + 1);
    text.resize(static_cast<std::size_t>(length));
    return text;
}

void PutText(WindowHandle window, const std::string& text) {
    ::SetWindowTextA(window, text.c_str());
}

void ChooseText(WindowHandle comboBox, const std::string& text) {
    const auto everyItem = static_cast<WPARAM>(-1);
    const bool chosen = !text.empty() && ::SendMessageA(comboBox, CB_SELECTSTRING, everyItem, Text(text)) != CB_ERR;
    if (!chosen) PutText(comboBox, text);
}

void FocusOn(WindowHandle window, bool markAll) {
    ::SetFocus(window);
    if (markAll) ::SendMessageA(window, EM_SETSEL, 0, -1);
}

WindowHandle FocusedWindow() {
    return ::GetFocus();
}

void AddItem(WindowHandle box, WindowKind kind, const std::string& text) {
    ::SendMessageA(box, kind == WindowKind::ComboBox ? CB_ADDSTRING : LB_ADDSTRING, 0, Text(text));
}

int ItemCount(WindowHandle listBox) {
    const LRESULT count = ::SendMessageA(listBox, LB_GETCOUNT, 0, 0);
    return count == LB_ERR ? 0 : static_cast<int>(count);
}

void SetItemData(WindowHandle listBox, int item, std::intptr_t data) {
    ::SendMessageA(listBox, LB_SETITEMDATA, static_cast<WPARAM>(item), data);
}

std::intptr_t ItemData(WindowHandle listBox, int item) {
    if (item < 0 || item >= ItemCount(listBox)) return 0;
    return ::SendMessageA(listBox, LB_GETITEMDATA, static_cast<WPARAM>(item), 0);
}

}  // namespace qv::platform
