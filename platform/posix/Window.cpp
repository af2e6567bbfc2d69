#include "platform/Window.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "platform/Text.h"

/// A window in memory.
struct HWND__ {
    struct Item {
        std::string text;
        std::intptr_t data = 0;
    };

    int id = 0;
    HWND__* parent = nullptr;
    std::string text = {};
    std::vector<Item> items = {};
    std::vector<std::unique_ptr<HWND__>> controls = {};
};

namespace qv::platform {
namespace {

thread_local WindowHandle g_focused = nullptr;

bool IsItem(WindowHandle box, int item) {
    return item >= 0 && item < static_cast<int>(box->items.size());
}

bool BeginsWith(const std::string& text, const std::string& start) {
    return ToUpper(text).starts_with(ToUpper(start));
}

}  // namespace

WindowHandle MakeWindow(WindowKind, WindowHandle dialog, int id) {
    auto window = std::make_unique<HWND__>(HWND__{.id = id, .parent = dialog});
    const WindowHandle handle = window.get();
    if (dialog)
        dialog->controls.push_back(std::move(window));
    else
        static_cast<void>(window.release());
    return handle;
}

void EndWindow(WindowHandle window) {
    for (const auto& control : window->controls)
        if (g_focused == control.get()) g_focused = nullptr;
    if (g_focused == window) g_focused = nullptr;
    if (HWND__* const dialog = window->parent)
        std::erase_if(dialog->controls, [&](const auto& control) { return control.get() == window; });
    else
        delete window;
}

WindowHandle ControlOf(WindowHandle dialog, int id) {
    for (const auto& control : dialog->controls)
        if (control->id == id) return control.get();
    return nullptr;
}

std::string TextOf(WindowHandle window) {
    return window->text;
}

void PutText(WindowHandle window, const std::string& text) {
    window->text = text;
}

void ChooseText(WindowHandle comboBox, const std::string& text) {
    const auto& items = comboBox->items;
    const auto item = std::find_if(items.begin(), items.end(), [&](const auto& i) { return BeginsWith(i.text, text); });
    comboBox->text = item == items.end() || text.empty() ? text : item->text;
}

void FocusOn(WindowHandle window, bool) {
    g_focused = window;
}

WindowHandle FocusedWindow() {
    return g_focused;
}

void AddItem(WindowHandle box, WindowKind, const std::string& text) {
    box->items.push_back({text});
}

int ItemCount(WindowHandle listBox) {
    return static_cast<int>(listBox->items.size());
}

void SetItemData(WindowHandle listBox, int item, std::intptr_t data) {
    if (IsItem(listBox, item)) listBox->items[static_cast<std::size_t>(item)].data = data;
}

std::intptr_t ItemData(WindowHandle listBox, int item) {
    return IsItem(listBox, item) ? listBox->items[static_cast<std::size_t>(item)].data : 0;
}

}  // namespace qv::platform
