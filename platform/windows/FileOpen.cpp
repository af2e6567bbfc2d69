#include "platform/FileOpen.h"

#include <windows.h>

#include "platform/Path.h"

namespace qv::platform {
namespace {

DWORD AccessOf(const OpenRequest& request) {
    return (request.read ? GENERIC_READ : 0) | (request.write ? GENERIC_WRITE : 0);
}

DWORD SharingOf(const OpenRequest& request) {
    return (request.denyRead ? 0 : FILE_SHARE_READ) | (request.denyWrite ? 0 : FILE_SHARE_WRITE);
}

DWORD DispositionOf(const OpenRequest& request) {
    if (request.create) return request.truncate ? CREATE_ALWAYS : OPEN_ALWAYS;
    return request.truncate ? TRUNCATE_EXISTING : OPEN_EXISTING;
}

}  // namespace

FileFailure OpenFile(const char* path, const OpenRequest& request, FileHandle& handle) {
    SECURITY_ATTRIBUTES security = {sizeof security, nullptr, request.inheritable};
    const HANDLE file = ::CreateFileA(NativePath(path).c_str(), AccessOf(request), SharingOf(request), &security,
                                      DispositionOf(request), FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return LastFailureAt(path);
    handle = reinterpret_cast<FileHandle>(file);
    return {};
}

FileFailure CloseAndRemove(FileHandle handle, const char* path) {
    CloseFile(handle);
    return ::DeleteFileA(NativePath(path).c_str()) ? FileFailure{} : LastFailure();
}

}  // namespace qv::platform
