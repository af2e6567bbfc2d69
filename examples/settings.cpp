// Settings in an XML document: read by path with their types, changed, and written back.
//
//   settings FILE
//
// Each run counts itself. The first one creates the file.

#include <clocale>
#include <cstdio>

#include "qvcommon/Exceptions.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/XmlHelper.h"

static CXmlHelper::Document Load(const char* path) {
    const CXmlHelper::Document document = CXmlHelper::CreateDocument();
    if (!CFileUtils::IsExist(path)) return document;
    if (!document.load(CFileUtils::ReadFile(path))) {  // in the encoding that the file declares
        const auto problem = document.get_parseError();
        std::fprintf(stderr, "%s, line %ld: %s\n", path, problem.get_line(), problem.get_reason().AsStd().c_str());
        AfxThrowUserException();
    }
    return document;
}

static void Count(const char* path) {
    const CXmlHelper::Document settings = Load(path);

    // Creates the missing parts of a path; existing ones are unchanged.
    CXmlHelper::CreateXmlPath(settings, "settings/runs");

    int runs = 0;  // an empty element also counts as 0
    CXmlHelper::GetInteger(settings, "settings/runs", runs);
    CXmlHelper::SetInteger(settings, "settings/runs", runs + 1);

    // Indexes start at 0, so this is the third user; CreateXmlPath also creates the two before.
    CXmlHelper::CreateXmlPath(settings, "settings/user[2]/@name");
    CXmlHelper::SetString(settings, "settings/user[2]/@name", "Anna & Bert");

    // A missing value is not an error: Get returns 0 and leaves the variable unchanged, except for booleans and dates,
    // so it may hold the default.
    BOOL dark = 0;
    if (!CXmlHelper::GetBool(settings, "settings/dark", dark)) std::puts("no choice of colours yet");

    CFileUtils::WriteFile(path, settings.save(), 0, 1);
    std::printf("run %d\n%s\n", runs + 1, settings.get_documentElement().get_xml().AsStd().c_str());
}

int main(int argc, char** argv) {
    QvReportUncaught();
    std::setlocale(LC_ALL, "");
    if (argc != 2) {
        std::fputs("usage: settings FILE\n", stderr);
        return 2;
    }
    Count(CFileUtils::GetLibraryPath(argv[1]));  // paths from outside have the system's form
}
