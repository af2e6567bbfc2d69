#include "platform/posix/messages/Names.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <map>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Clock.h"
#include "platform/MessageWindow.h"
#include "platform/PercentCode.h"
#include "platform/Window.h"
#include "platform/posix/FolderEntries.h"
#include "platform/posix/OfdLock.h"
#include "platform/posix/SameFile.h"

namespace qv::platform::messages {
namespace {

struct Handles {
    std::mutex mutex;
    std::map<std::string, WindowHandle> windows;
};

Handles& AllHandles() {
    static auto& handles = *new Handles;  // never destroyed: threads may outlive main
    return handles;
}

bool IsOwnFolder(const std::string& path, mode_t forbidden) {
    struct stat status;
    return sys::fstatat(AT_FDCWD, path.c_str(), &status, AT_SYMLINK_NOFOLLOW).ok() && S_ISDIR(status.st_mode) &&
           status.st_uid == ::geteuid() && !(status.st_mode & forbidden);
}

bool IsPrivateFolder(const std::string& path) {
    return IsOwnFolder(path, S_IRWXG | S_IRWXO);
}

// The folder that is used until the user logs in, such as by services.
std::string EarlyFolder() {
    return "/tmp/qvcommon-" + std::to_string(::geteuid());
}

// Creates the folder of the user's sockets; returns empty unless the user owns it with mode 0700.
std::string MessageFolder() {
    const std::string runtime = "/run/user/" + std::to_string(::geteuid());
    const std::string folder = IsOwnFolder(runtime, 0) ? runtime + "/qvcommon" : EarlyFolder();
    sys::mkdirat(AT_FDCWD, folder.c_str(), S_IRWXU).IgnoreError();  // usually it exists; it is checked below
    return IsPrivateFolder(folder) ? folder : "";
}

constexpr std::string_view kLockEnd = ".lock";

// No socket has the name of another one's lock file.
std::string Escaped(const std::string& name) {
    const std::size_t lockEnd = name.ends_with(kLockEnd) ? name.size() - kLockEnd.size() : name.npos;
    std::string out;
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (const char c = name[i]; c == '/' || c == '%' || c == '\0' || (c == '.' && i == 0) || i == lockEnd)
            AppendPercent(out, c);
        else
            out += c;
    }
    return out;
}

// 128 bits: FNV-1a with two offset bases. A collision only prevents two names from being used at once, since every
// frame contains its target's name.
std::string Digest(const std::string& name) {
    std::string out;
    for (std::uint64_t hash : {0xCBF29CE484222325u, 0x9AE16A3B2F90404Fu}) {
        for (const char c : name) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3u;
        char text[17];
        std::snprintf(text, sizeof text, "%016jx", static_cast<std::uintmax_t>(hash));
        out += text;
    }
    return out;
}

std::string LockPath(const std::string& socketPath) {
    return socketPath + std::string(kLockEnd);
}

// The owner of a name locks the whole lock file. A process that removes what a killed owner has left locks one byte, so
// that the name cannot be acquired meanwhile; queries for the owner check another byte, and find it free.
constexpr ByteRange kOwned = {.start = 0, .length = 1}, kSwept = {.start = 1, .length = 1};

Result<int> OpenLock(const std::string& path, int flags) {
    constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR | S_ISVTX;  // sticky: programs that clean up keep it, however old
    return sys::openat(AT_FDCWD, path.c_str(), flags | O_CLOEXEC | O_NOFOLLOW, kOwnerOnly);
}

bool IsStillAt(int file, const std::string& path) {
    struct stat here;
    return sys::fstat(file, &here).ok() && LeadsTo(AT_FDCWD, path.c_str(), here);
}

// Lists the lock files in the folder.
std::vector<std::string> LocksBeside(const std::string& socketPath) {
    const std::string folder = socketPath.substr(0, socketPath.rfind('/') + 1);
    std::vector<std::string> locks;
    const UniqueFd opened(sys::openat_folder(AT_FDCWD, folder.c_str(), O_NOFOLLOW));
    // A folder that cannot be read is not swept.
    ForEachEntry(opened.Get(), [&](const dirent64& entry) {
        if (entry.d_type == DT_REG && std::string_view(entry.d_name).ends_with(kLockEnd))
            locks.push_back(folder + entry.d_name);
    }).IgnoreError();
    return locks;
}

// Removes a lock file without an owner, and its socket.
void Sweep(const std::string& path) {
    UniqueFd lock(OpenLock(path, O_RDWR));
    if (!lock || !SetOfdLock(lock.Get(), OfdLockKind::Write, kSwept).ok()) return;
    ReleaseName(path.substr(0, path.size() - kLockEnd.size()), lock);
}

}  // namespace

WindowHandle HandleOf(const std::string& className) {
    const std::scoped_lock lock(AllHandles().mutex);
    WindowHandle& window = AllHandles().windows[className];
    if (!window) {
        window = MakeWindow(WindowKind::Dialog, nullptr, 0);
        PutText(window, className);
    }
    return window;
}

std::string NameOf(WindowHandle window) {
    if (!window) return "";
    const std::scoped_lock lock(AllHandles().mutex);
    const auto& windows = AllHandles().windows;
    const auto found =
        std::find_if(windows.begin(), windows.end(), [window](const auto& entry) { return entry.second == window; });
    return found == windows.end() ? "" : found->first;
}

// The system's limit for a socket's path is 107 bytes.
std::string SocketPath(const std::string& className) {
    constexpr std::size_t longest = 72;
    const std::string folder = MessageFolder(), name = Escaped(className);
    if (folder.empty() || className.empty() || name.size() > kLongestClassName) return "";
    const std::string file = name.size() <= longest ? name : name.substr(0, longest - 33) + '-' + Digest(className);
    const std::string early = EarlyFolder() + '/' + file;
    // Its listener may have been started before the user logged in.
    const bool isEarly = folder != EarlyFolder() && IsPrivateFolder(EarlyFolder()) && IsNameOwned(early);
    return isEarly ? early : folder + '/' + file;
}

sockaddr_un AddressOf(const std::string& socketPath) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socketPath.copy(address.sun_path, sizeof address.sun_path - 1);
    return address;
}

UniqueFd AcquireName(const std::string& socketPath) {
    const std::string path = LockPath(socketPath);
    for (int attempt = 0; attempt < 1000;) {
        UniqueFd file(OpenLock(path, O_RDWR | O_CREAT));
        if (!file) return UniqueFd();
        const auto set = SetOfdLock(file.Get(), OfdLockKind::Write);
        if (set.ok()) {
            if (IsStillAt(file.Get(), path)) return file;  // otherwise it has just been removed
            continue;
        }
        if (!IsLockConflict(set) || HasLockConflict(file.Get(), OfdLockKind::Write, kOwned).value()) return UniqueFd();
        Sleep(std::chrono::milliseconds(1));  // until it has been swept
        ++attempt;
    }
    return UniqueFd();
}

bool IsNameOwned(const std::string& socketPath) {
    const UniqueFd file(OpenLock(LockPath(socketPath), O_RDONLY));
    return file && HasLockConflict(file.Get(), OfdLockKind::Write, kOwned).value();
}

void ReleaseName(const std::string& socketPath, UniqueFd& lock) {
    if (IsStillAt(lock.Get(), LockPath(socketPath))) {
        // Remaining files are reused by the next window of that name.
        sys::unlinkat(AT_FDCWD, socketPath.c_str(), 0).IgnoreError();
        sys::unlinkat(AT_FDCWD, LockPath(socketPath).c_str(), 0).IgnoreError();
    }
    lock = UniqueFd();
}

void SweepNames(const std::string& socketPath) {
    constexpr std::size_t kMost = 64;
    const std::vector<std::string> locks = LocksBeside(socketPath);
    // Starts at a different position each time, so that the number of owned names does not matter.
    static std::atomic<std::size_t> next(static_cast<std::size_t>(::getpid()));
    const std::size_t first = next.fetch_add(kMost);
    for (std::size_t i = 0; i < std::min(kMost, locks.size()); ++i) Sweep(locks[(first + i) % locks.size()]);
}

bool IsSameUser(int socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return sys::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size).ok() && peer.uid == ::geteuid();
}

}  // namespace qv::platform::messages
