#include "platform/Desktop.h"

#include "platform/Error.h"
#include "platform/windows/System.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {
namespace {

/// Initializes COM for the calling thread, unless it is already initialized, in any mode.
class ComScope {
public:
    ComScope() : m_ready(sys::CoInitializeEx(nullptr, DWORD{COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE}).ok()) {}
    ~ComScope() {
        if (m_ready) ::CoUninitialize();
    }
    ComScope(const ComScope&) = delete;
    ComScope& operator=(const ComScope&) = delete;

private:
    bool m_ready;
};

unsigned long Execute(const wchar_t* verb, const std::wstring& path) {
    SHELLEXECUTEINFOW info = {};
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_FLAG_NO_UI | SEE_MASK_NOASYNC;
    info.lpVerb = verb;
    info.lpFile = path.c_str();
    info.nShow = SW_SHOWNORMAL;
    return sys::ShellExecuteExW(&info).error();
}

unsigned long Show(const std::wstring& path) {
    const auto item = sys::ILCreateFromPathW(path.c_str());
    if (!item.ok()) return ERROR_FILE_NOT_FOUND;
    const auto shown = sys::SHOpenFolderAndSelectItems(item.value(), UINT{0}, nullptr, DWORD{0});
    ::ILFree(item.value());
    return shown.error();
}

}  // namespace

bool RunDesktopVerb(DesktopVerb verb, const std::string& path, std::string& problem) {
    const ComScope com;
    const std::wstring wide = WideFullPath(WidePath(path));  // the shell does not accept the extended form
    const unsigned long error =
        verb == DesktopVerb::Reveal ? Show(wide) : Execute(verb == DesktopVerb::Print ? L"print" : L"open", wide);
    if (error != 0) problem = ErrorMessage(error);
    return error == 0;
}

}  // namespace qv::platform
