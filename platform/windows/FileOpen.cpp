#include "platform/FileOpen.h"

#include <chrono>

#include "platform/Clock.h"
#include "platform/FileStatus.h"
#include "platform/windows/FindData.h"
#include "platform/windows/UniqueHandle.h"
#include "platform/windows/WritableScope.h"
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

/// A file that is being deleted refuses all access, and its attributes, until its last handle is closed: usually at
/// once.
template <class Open>
Result<HANDLE> OpenAfterDeletion(const std::wstring& path, Open open) {
    constexpr int kMostTries = 20;
    for (int tries = 1;; ++tries) {
        const auto file = open();
        if (file.error() != ERROR_ACCESS_DENIED || tries == kMostTries) return file;
        const auto error = sys::GetFileAttributesW(path.c_str()).error();
        if (error == ERROR_FILE_NOT_FOUND) return open();  // it is gone by now, or the folder is not writable
        if (error != ERROR_ACCESS_DENIED) return file;
        Sleep(std::chrono::milliseconds(1));
    }
}

}  // namespace

Status OpenFile(const char* path, const OpenRequest& request, FileHandle& handle) {
    SECURITY_ATTRIBUTES security = {sizeof security, nullptr, request.inheritable};
    const std::wstring wide = WidePath(path);
    if (request.folderAccess && IsLinkAt(wide)) return {FileCause::BadPath, ERROR_CANT_ACCESS_FILE};
    const auto open = [&](DWORD attributes) {
        return sys::CreateFileW(wide.c_str(), AccessOf(request), SharingOf(request), &security, DispositionOf(request),
                                attributes, nullptr);
    };
    auto file = OpenAfterDeletion(wide, [&] { return open(FILE_ATTRIBUTE_NORMAL); });
    if (file.error() == ERROR_ACCESS_DENIED && request.create && request.truncate) {
        // The system overwrites a hidden or system file only by one with the same of these attributes.
        const auto attributes = sys::GetFileAttributesW(wide.c_str());
        const DWORD kept = attributes.ok() ? attributes.value() & kHiddenOrSystem : 0;
        if (kept) file = open(kept);
    }
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
