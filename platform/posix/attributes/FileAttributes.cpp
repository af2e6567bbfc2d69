#include "platform/posix/attributes/FileAttributes.h"

#include <string>
#include <vector>

#include "platform/posix/System.h"

namespace qv::platform {
namespace {

/// For calls that fill a buffer, or return the required size for an empty one. Empty if there is no data.
template <class Call>
std::vector<char> Filled(Call call) {
    const auto needed = call(nullptr, 0);
    if (!needed.ok() || needed.value() <= 0) return {};
    std::vector<char> bytes(static_cast<std::size_t>(needed.value()));
    const auto got = call(bytes.data(), bytes.size());
    bytes.resize(got.ok() ? static_cast<std::size_t>(got.value()) : 0);
    return bytes;
}

/// Also copies access lists, which are extended attributes.
void CopyExtendedAttributes(int from, int to) {
    const auto names = Filled([from](char* buffer, std::size_t size) { return sys::flistxattr(from, buffer, size); });
    for (std::size_t at = 0; at < names.size();) {
        const std::string name(names.data() + at);
        const auto value =
            Filled([&](char* buffer, std::size_t size) { return sys::fgetxattr(from, name.c_str(), buffer, size); });
        // Some can only be set by the system.
        sys::fsetxattr(to, name.c_str(), value.data(), value.size(), 0).IgnoreError();
        at += name.size() + 1;
    }
}

}  // namespace

void CopyAttributes(int from, const struct stat& wanted, int to) {
    struct stat now;
    if (!sys::fstat(to, &now).ok()) return;
    constexpr auto kUnchanged = static_cast<uid_t>(-1);
    constexpr mode_t kAll = 07777, kPermissions = 01777;
    const auto give = [&](uid_t owner) {
        const bool same = now.st_gid == wanted.st_gid && (owner == kUnchanged || now.st_uid == owner);
        return same || sys::fchown(to, owner, wanted.st_gid).ok();
    };
    const bool owned = give(wanted.st_uid);
    // Only the administrator can change the owner; the group is kept if the user belongs to it.
    const bool grouped = owned || give(kUnchanged);
    CopyExtendedAttributes(from, to);
    // Under another owner the set-id bits would grant the wrong rights, and under another group the group's bits would
    // admit the wrong users.
    mode_t mode = wanted.st_mode & (owned ? kAll : kPermissions);
    if (!grouped) mode &= ~mode_t{S_IRWXG} | ((mode & S_IRWXO) << 3);
    sys::fchmod(to, mode).IgnoreError();
}

}  // namespace qv::platform
