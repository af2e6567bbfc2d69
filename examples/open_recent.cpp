// Recently opened documents: opens one with the desktop's program for it, and remembers it in the profile.
//
//   open_recent --list   lists them, the latest first
//   open_recent FILE     opens FILE

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <string_view>

#include "qvcommon/AppRegistry.h"
#include "qvcommon/Exceptions.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/ProfileStore.h"
#include "qvcommon/ShellVerbHelper.h"
#include "qvcommon/framework/WinApp.h"

static constexpr int kMost = 10;

static void Remember(const CString& path) {
    ProfileStore profile;
    profile.Update([&] {  // atomic, even if several programs update the profile at once
        CStringArray recent = profile.GetList("Files", "Recent");
        std::erase(recent.AsStd(), path);
        recent.InsertAt(0, path);
        recent.SetSize(std::min(recent.GetSize(), kMost));
        profile.SetList("Files", "Recent", recent);
    });
}

static void List() {
    for (const CString& path : ProfileStore().GetList("Files", "Recent"))
        std::puts(CFileUtils::GetNativePath(path).AsStd().c_str());
}

int main(int argc, char** argv) {
    QvReportUncaught();
    std::setlocale(LC_ALL, "");
    if (argc != 2) {
        std::fputs("usage: open_recent --list | FILE\n", stderr);
        return 2;
    }
    const CWinApp application("OpenRecent");
    SetRegistryKey("QvCommon Examples");
    if (std::string_view(argv[1]) == "--list") {
        List();
        return 0;
    }
    const CString path = CFileUtils::GetLibraryPath(argv[1]);  // paths from outside have the system's form
    CShellVerbHelper::Open(path);
    Remember(path);
}
