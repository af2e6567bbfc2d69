#include "platform/Profile.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <vector>

#include "platform/File.h"
#include "platform/IniText.h"
#include "platform/posix/Owned.h"

namespace qv::platform {
namespace {

std::string g_folder;  // instead of the user's

std::string Home() {
    if (const char* const home = std::getenv("HOME"); home && *home == '/') return home;
    std::vector<char> texts(16384);
    passwd entry{}, *found = nullptr;
    ::getpwuid_r(::geteuid(), &entry, texts.data(), texts.size(), &found);
    return found && entry.pw_dir ? entry.pw_dir : "";
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
        ::mkdir(folder.substr(0, end).c_str(), 0700);
    }
}

// What the path leads to; the path itself while nothing is there.
std::string Target(const std::string& path) {
    char* const real = ::realpath(path.c_str(), nullptr);
    std::string target = real ? real : path;
    std::free(real);
    return target;
}

/// A missing file is an empty one. Nothing when it cannot be read.
std::optional<std::string> ReadText(const std::string& path) {
    const Owned file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file) return errno == ENOENT ? std::optional<std::string>("") : std::nullopt;
    std::string text;
    char buffer[16384];
    for (;;) {
        std::size_t count = 0;
        if (ReadBytes(file.Get(), buffer, sizeof buffer, count)) return std::nullopt;
        if (count == 0) return text;
        text.append(buffer, count);
    }
}

/// Holds the writers' lock, or nothing where the file system knows no locks: the file is still whole at every moment then.
Owned TakeTurn(const std::string& path) {
    Owned file(::open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    while (file && ::fcntl(file.Get(), F_OFD_SETLKW, &lock) && errno == EINTR) {
    }
    return file;
}

mode_t ModeOf(const std::string& path) {
    struct stat status;
    return ::stat(path.c_str(), &status) ? 0600 : status.st_mode & 0777;
}

bool FillFile(Owned file, mode_t mode, const std::string& text) {
    if (!file || ::fchmod(file.Get(), mode)) return false;
    if (WriteBytes(file.Get(), text.data(), text.size()) || FlushToDisk(file.Get())) return false;
    return !CloseFile(file.Release());
}

// The old text, or the new one, whatever happens meanwhile.
bool ReplaceText(const std::string& path, const std::string& text) {
    std::string fresh = path + ".XXXXXX";
    Owned file(::mkostemp(fresh.data(), O_CLOEXEC));
    if (!file) return false;
    const bool done = FillFile(std::move(file), ModeOf(path), text) && !::rename(fresh.c_str(), path.c_str());
    if (!done) ::unlink(fresh.c_str());
    return done;
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
    const std::string path = Target(FileOf(place));
    const Owned turn = TakeTurn(path);
    const auto text = ReadText(path);
    return text && ReplaceText(path, WithIniValue(*text, section, entry, value));
}

}  // namespace qv::platform
