#include "platform/User.h"

#include <iterator>
#include <memory>

#include "platform/windows/System.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {
namespace {

/// Frees a buffer allocated by the system.
struct FreeBuffer {
    void operator()(void* buffer) const { ::NetApiBufferFree(buffer); }
};

template <class Record>
using Records = std::unique_ptr<Record, FreeBuffer>;

}  // namespace

std::string UserName() {
    wchar_t name[257];
    DWORD size = std::size(name);
    return sys::GetUserNameW(name, &size).ok() ? FromSystem(name) : "Unknown";
}

Status ListUsers(std::vector<std::string>& names) {
    DWORD resume = 0;
    for (;;) {
        BYTE* data = nullptr;
        DWORD count = 0, all = 0;
        const auto listed = sys::NetUserEnum(nullptr, DWORD{0}, DWORD{FILTER_NORMAL_ACCOUNT}, &data,
                                             DWORD{MAX_PREFERRED_LENGTH}, &count, &all, &resume);
        const Records<USER_INFO_0> users(reinterpret_cast<USER_INFO_0*>(data));
        if (!listed.ok() && listed.error() != ERROR_MORE_DATA) return listed.status();
        for (DWORD i = 0; i < count; ++i) names.push_back(FromSystem(users.get()[i].usri0_name));
        if (listed.ok()) return {};
    }
}

std::string DisplayName(const std::string& user) {
    BYTE* data = nullptr;
    const auto found = sys::NetUserGetInfo(nullptr, ToSystem(user).c_str(), DWORD{2}, &data);
    const Records<USER_INFO_2> record(reinterpret_cast<USER_INFO_2*>(data));
    return found.ok() && record && record->usri2_full_name ? FromSystem(record->usri2_full_name) : "";
}

std::string MachineName() {
    wchar_t name[256];
    DWORD size = std::size(name);
    return sys::GetComputerNameExW(ComputerNameDnsHostname, name, &size).ok() ? FromSystem(name) : "";
}

}  // namespace qv::platform
