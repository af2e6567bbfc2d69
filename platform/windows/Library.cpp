#include "platform/Library.h"

#include "platform/Error.h"
#include "platform/windows/System.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {
namespace {

/// Prevents the system from showing a window about an invalid library file.
class NoErrorWindows {
public:
    NoErrorWindows() { sys::SetThreadErrorMode(DWORD{SEM_FAILCRITICALERRORS}, &m_before).IgnoreError(); }
    ~NoErrorWindows() { sys::SetThreadErrorMode(m_before, nullptr).IgnoreError(); }
    NoErrorWindows(const NoErrorWindows&) = delete;
    NoErrorWindows& operator=(const NoErrorWindows&) = delete;

private:
    DWORD m_before = 0;
};

}  // namespace

// Without these flags, supported since Windows 7 with update KB2533623, the current folder would be searched too.
LibraryHandle OpenLibrary(const char* path, std::string& problem) {
    const NoErrorWindows quiet;
    constexpr DWORD kFlags = LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS;
    const std::wstring wide = WidePath(path);
    const std::wstring full = wide.starts_with(L"\\\\?\\") ? wide : WideFullPath(wide);
    const auto loaded = sys::LoadLibraryExW(full.c_str(), HANDLE{}, kFlags);
    if (!loaded.ok()) problem = ErrorMessage(loaded.error());
    return reinterpret_cast<LibraryHandle>(loaded.value());
}

void* FindInLibrary(LibraryHandle library, const char* name) {
    return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(library), name));
}

void CloseLibrary(LibraryHandle library) {
    ::FreeLibrary(static_cast<HMODULE>(library));
}

std::vector<std::string> LibraryFileNames(std::string_view name) {
    return {std::string(name) + ".dll"};
}

}  // namespace qv::platform
