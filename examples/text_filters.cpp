// Plug-ins: every library in the folder "plugins" beside this program changes a text.
//
//   text_filters TEXT
//
// plugins/upper.cpp is such a library.

#include <clocale>
#include <cstdio>
#include <string>

#include "qvcommon/AppRegistry.h"
#include "qvcommon/DllLoader.h"
#include "qvcommon/Exceptions.h"
#include "qvcommon/UnicodeString.h"

// What every plug-in exports: name and type, declared once.
static constexpr CDllFunction<int()> kVersion{"FilterVersion"};
static constexpr CDllFunction<void(char*)> kFilter{"FilterText"};

static void Show(const CString& by, const CString& text) {
    const CUnicodeString both(text);  // converts to UTF-16 on demand
    std::printf("%s: %s (%d bytes, %d UTF-16 units)\n", by.c_str(), text.c_str(), both.GetBytes().GetLength(),
                static_cast<int>(both.GetWide().size()));
}

static void Run(std::string text) {
    DllLoader plugins;
    plugins.AddFolder(GetApplicationDirectory() + "plugins");  // no other folder is searched
    plugins.SetVersion(kVersion, 1, 1);                        // raises an exception for other versions
    Show("given", CString(text));
    for (const CString& name : plugins.GetNames()) {
        plugins.Load(name).Get(kFilter)(text.data());
        Show(name, CString(text));
    }
}

int main(int argc, char** argv) {
    QvReportUncaught();
    std::setlocale(LC_ALL, "");
    if (argc != 2) {
        std::fputs("usage: text_filters TEXT\n", stderr);
        return 2;
    }
    Run(argv[1]);
}
