#include "qvcommon/framework/Window.h"

#include <atomic>
#include <utility>

#include "platform/PerThread.h"
#include "platform/Window.h"

IMPLEMENT_DYNAMIC(CWnd, CObject)

namespace platform = qv::platform;
using platform::WindowKind;

namespace {

std::atomic<CWnd*> g_mainWindow = nullptr;

/// The objects attached to windows of this thread.
std::map<HWND, CWnd*>& Objects() {
    return platform::OfThread<std::map<HWND, CWnd*>>();
}

}  // namespace

CWnd* AfxGetMainWnd() {
    return g_mainWindow;
}

void AfxSetMainWnd(CWnd* window) {
    g_mainWindow = window;
}

CWnd::~CWnd() {
    const bool owned = m_owned;
    if (const HWND window = Detach(); window && owned) platform::EndWindow(window);
}

bool CWnd::Create(Kind kind, CWnd* parent, int id) {
    const HWND window = platform::MakeWindow(static_cast<WindowKind>(kind), parent ? parent->m_hWnd : nullptr, id);
    if (!window) return false;
    Attach(window);
    m_owned = !parent;  // a control is destroyed with its dialog
    return true;
}

void CWnd::Attach(HWND window) {
    Detach();
    m_hWnd = window;
    Objects()[window] = this;
}

HWND CWnd::Detach() {
    if (const auto object = Objects().find(m_hWnd); object != Objects().end() && object->second == this)
        Objects().erase(object);
    m_items.clear();
    m_owned = false;
    return std::exchange(m_hWnd, nullptr);
}

void CWnd::GetWindowText(CString& text) const {
    text = CString(platform::TextOf(m_hWnd));
}

void CWnd::SetWindowText(const char* text) {
    platform::PutText(m_hWnd, CString(text).AsStd());
}

void CWnd::SetFocus() {
    platform::FocusOn(m_hWnd, false);
}

CWnd* CWnd::GetDlgItem(int id) {
    const HWND window = platform::ControlOf(m_hWnd, id);
    if (!window) return nullptr;
    if (const auto object = Objects().find(window); object != Objects().end()) return object->second;
    auto& item = m_items[id];
    if (!item) item = std::make_unique<CWnd>();
    item->m_hWnd = window;
    return item.get();
}

void CComboBox::AddString(const char* text) {
    platform::AddItem(m_hWnd, WindowKind::ComboBox, CString(text).AsStd());
}

void CCheckListBox::AddString(const char* text) {
    platform::AddItem(m_hWnd, WindowKind::ListBox, CString(text).AsStd());
}

int CCheckListBox::GetCount() const {
    return platform::ItemCount(m_hWnd);
}

int CCheckListBox::GetCheck(int item) const {
    return static_cast<int>(platform::ItemData(m_hWnd, item));
}

void CCheckListBox::SetCheck(int item, int check) {
    platform::SetItemData(m_hWnd, item, check);
}
