#include "platform/Profile.h"

#include <cerrno>
#include <cstdlib>

#include "platform/AtomicFile.h"
#include "platform/IniText.h"
#include "platform/Path.h"
#include "platform/posix/OfdLock.h"
#include "platform/posix/RealPath.h"
#include "platform/posix/UniqueFd.h"
#include "platform/posix/UserEntry.h"

namespace qv::platform {
namespace {

std::string g_folder;  // instead of the user's

std::string Home() {
    if (const char* const home = std::getenv("HOME"); home && *home == '/') return home;
    return OwnUserEntry(&passwd::pw_dir);
}

// Where freedesktop.org puts the base directories; relative paths in the variable count for nothing.
std::string ConfigurationFolder() {
    if (!g_folder.empty()) return g_folder;
    const char* const folder = std::getenv("XDG_CONFIG_HOME");
    return folder && *folder == '/' ? std::string(folder) : Home() + "/.config";
}

std::string FolderOf(const ProfilePlace& place) {
    return ConfigurationFolder() + (place.company.empty() ? "" : '/' + place.company);
}

std::string FileOf(const ProfilePlace& place) {
    return FolderOf(place) + '/' + place.application + ".ini";
}

void MakeFolders(const std::string& folder) {
    for (std::size_t end = 1; end != folder.npos;) {
        end = folder.find('/', end + 1);
        // Most exist already. One that cannot be made shows when the file in it cannot be.
        sys::mkdirat(AT_FDCWD, folder.substr(0, end).c_str(), 0700).IgnoreError();
    }
}

/// A missing file is an empty one. Nothing when it cannot be read.
std::optional<std::string> ReadText(const std::string& path) {
    const auto opened = sys::openat(AT_FDCWD, path.c_str(), O_RDONLY | O_CLOEXEC, 0);
    if (!opened.ok()) return opened.error() == ENOENT ? std::optional<std::string>("") : std::nullopt;
    const UniqueFd file(opened);
    std::string text;
    char buffer[16384];
    for (;;) {
        std::size_t count = 0;
        if (!ReadBytes(file.Get(), buffer, sizeof buffer, count).ok()) return std::nullopt;
        if (count == 0) return text;
        text.append(buffer, count);
    }
}

/// Waits for the writers' lock and holds it, or nothing where the file system keeps no locks.
UniqueFd TakeTurn(const std::string& path) {
    constexpr mode_t kOwnerOnly = 0600;
    const std::string lock = path + ".lock";
    UniqueFd file(sys::openat(AT_FDCWD, lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kOwnerOnly));
    // Without the lock the file is still whole at every moment.
    if (file) WaitForOfdLock(file.Get(), OfdLockKind::Write).IgnoreError();
    return file;
}

mode_t ModeOf(const std::string& path) {
    struct stat status;
    return sys::fstatat(AT_FDCWD, path.c_str(), &status, 0).ok() ? status.st_mode & 0777 : 0600;
}

// The old text, or the new one, whatever happens meanwhile.
bool ReplaceText(const std::string& path, const std::string& text) {
    AtomicFile file;
    return file.Create(LibraryPath(path).c_str()).ok() &&
           sys::fchmod(static_cast<int>(file.Handle()), ModeOf(path)).ok() &&
           WriteBytes(file.Handle(), text.data(), text.size()).ok() &&
           file.Commit(IfExists::Replace, Durability::Synced).ok();
}

std::string Changed(const std::string& text, const char* section, const char* entry, const char* value) {
    if (!entry) return WithoutIniSection(text, section);
    return value ? WithIniValue(text, section, entry, value) : WithoutIniValue(text, section, entry);
}

}  // namespace

bool UseProfileFolder(const char* folder) {
    g_folder = folder ? folder : "";
    return true;
}

std::optional<std::string> ReadProfile(const ProfilePlace& place, const char* section, const char* entry) {
    const auto text = ReadText(FileOf(place));
    return text ? FindIniValue(*text, section, entry) : std::nullopt;
}

bool WriteProfile(const ProfilePlace& place, const char* section, const char* entry, const char* value) {
    MakeFolders(FolderOf(place));
    const std::string path = RealPath(FileOf(place));
    const UniqueFd turn = TakeTurn(path);
    const auto text = ReadText(path);
    return text && ReplaceText(path, Changed(*text, section, entry, value));
}

}  // namespace qv::platform
