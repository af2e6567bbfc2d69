#include "platform/FileOpen.h"

#include "platform/FileStatus.h"
#include "platform/windows/UniqueHandle.h"
#include "platform/windows/names/WidePath.h"

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

Status OpenFile(const char* path, const OpenRequest& request, FileHandle& handle) {
    SECURITY_ATTRIBUTES security = {sizeof security, nullptr, request.inheritable};
    const auto file = sys::CreateFileW(WidePath(path).c_str(), AccessOf(request), SharingOf(request), &security,
                                       DispositionOf(request), FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file.ok()) handle = ContractHandle(file.value());
    return file.statusAt(path);
}

Status MayRead(const char* path) {
    FileHandle file = kNoFile;
    const Status opened = OpenFile(path, {.read = true}, file);
    // Nothing was written through it.
    if (opened.ok()) CloseFile(file).IgnoreError();
    return opened;
}

Status CloseAndRemove(FileHandle handle, const char* path) {
    CloseFile(handle).IgnoreError();  // the content is about to be deleted
    return RemoveFile(path);
}

}  // namespace qv::platform
