#include "platform/posix/attributes/FolderAccess.h"

#include "platform/posix/System.h"

namespace qv::platform {

void GrantAsFolder(int file, int folder, const std::string& folderPath) {
    constexpr mode_t kEverybodyReads = 0644, kGroupAndOthersWrite = 0022, kAll = 07777;
    constexpr auto kUnchanged = static_cast<uid_t>(-1);
    struct stat place, made;
    if (!sys::fstatat(folder, folderPath.c_str(), &place, 0).ok() || !sys::fstat(file, &made).ok()) return;
    const uid_t owner = ::geteuid() == 0 ? place.st_uid : kUnchanged;
    if (made.st_gid != place.st_gid || (owner != kUnchanged && made.st_uid != owner))
        sys::fchown(file, owner, place.st_gid).IgnoreError();  // the user need not be in the folder's group
    const mode_t mode = kEverybodyReads | (place.st_mode & kGroupAndOthersWrite);
    if ((made.st_mode & kAll) != mode) sys::fchmod(file, mode).IgnoreError();
}

}  // namespace qv::platform
