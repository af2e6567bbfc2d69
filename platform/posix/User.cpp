#include "platform/User.h"

#include <climits>
#include <mutex>

#include "platform/Ascii.h"
#include "platform/posix/UserEntry.h"

namespace qv::platform {
namespace {

/// Returns the full name in a user's entry: the text up to the first comma, in which "&" is replaced by the capitalized
/// login name.
std::string FullName(const std::string& gecos, const std::string& user) {
    std::string name;
    for (const char c : gecos.substr(0, gecos.find(','))) {
        if (c != '&')
            name += c;
        else if (!user.empty())
            (name += ascii::ToUpper(user[0])).append(user, 1);
    }
    return name;
}

/// The enumeration of users has one position per process.
std::mutex& ListMutex() {
    static std::mutex mutex;
    return mutex;
}

bool IsPerson(const passwd& entry) {
    constexpr uid_t kFirst = 1000, kLast = 59999;  // the range used by systemd and the distributions
    return entry.pw_uid >= kFirst && entry.pw_uid <= kLast;
}

}  // namespace

// Every lock on a document needs the name, and each query of the user database reads a file or uses the network.
std::string UserName() {
    thread_local struct {
        uid_t user = 0;
        std::string name;
    } known;
    const uid_t user = ::geteuid();
    if (known.name.empty() || known.user != user) known = {user, OwnUserEntry(&passwd::pw_name)};
    return known.name.empty() ? "Unknown" : known.name;
}

Status ListUsers(std::vector<std::string>& names) {
    const std::lock_guard lock(ListMutex());
    std::vector<char> texts(16384);
    ::setpwent();
    passwd entry{}, *found = nullptr;
    Result<ErrorNumber> read = ErrorNumber{};
    while ((read = sys::getpwent_r(&entry, texts.data(), texts.size(), &found)).ok())
        if (IsPerson(entry)) names.emplace_back(entry.pw_name);
    ::endpwent();
    return read.error() == ENOENT ? Status() : read.status();
}

std::string DisplayName(const std::string& user) {
    std::vector<char> texts(16384);
    passwd entry{}, *found = nullptr;
    const auto read = sys::getpwnam_r(user.c_str(), &entry, texts.data(), texts.size(), &found);
    return read.ok() && found && found->pw_gecos ? FullName(found->pw_gecos, user) : "";
}

std::string MachineName() {
    char name[HOST_NAME_MAX + 1] = {};
    if (!sys::gethostname(name, sizeof name - 1).ok()) return {};
    const std::string_view whole = name;
    return std::string(whole.substr(0, whole.find('.')));
}

}  // namespace qv::platform
