#include <atomic>

#include "files/ShellTree.h"
#include "platform/ShellOperation.h"

namespace {

using qv::platform::ShellFunction;

/// The longest path in the shell's list of one path, without the two final zero bytes.
constexpr int kLongestPath = 1302;

std::atomic<IShellProgress*> g_progress = nullptr;

bool Fits(const CString& path) {
    return !path.IsEmpty() && path.GetLength() <= kLongestPath;
}

/// Returns a list of one path.
CString ListOf(const CString& path) {
    return path + '\0';
}

unsigned short WithProgress(unsigned short flags, const char* title) {
    return static_cast<unsigned short>(flags | (title ? CFileUtils::shellSimpleProgress : 0));
}

}  // namespace

int CFileUtils::ShellCopyFile(const char* source, const char* destination, unsigned short flags, HWND owner,
                              const char* title) {
    const CString from = source, to = destination;
    if (!Fits(from) || !Fits(to)) return 0;
    const auto done = qv::platform::RunShellOperation(ShellFunction::Copy, ListOf(from), ListOf(to),
                                                      WithProgress(flags, title), owner, title);
    return done ? *done : qv::ShellTree(flags, title, g_progress).Copy(from, to);
}

int CFileUtils::ShellDeleteFile(const char* path, unsigned short flags, HWND owner, const char* title) {
    const CString name = path;
    if (!Fits(name)) return 0;
    const auto done = qv::platform::RunShellOperation(ShellFunction::Delete, ListOf(name), nullptr,
                                                      WithProgress(flags, title), owner, title);
    return done ? *done : qv::ShellTree(flags, title, g_progress).Delete(name);
}

IShellProgress* CFileUtils::SetShellProgress(IShellProgress* handler) {
    return g_progress.exchange(handler);
}
