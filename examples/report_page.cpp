// A report page whose sections open and close in the browser.
//
//   report_page FOLDER
//
// Writes FOLDER/index.html, and beside it the pictures, script and style sheet that such pages expect.

#include <clocale>
#include <cstdio>

#include "qvcommon/FileUtils.h"
#include "qvcommon/HtmlAssets.h"
#include "qvcommon/HtmlWriter.h"

// The head of a page is what derived classes add to. This line in it makes the page live in the browsers of today.
class Report : public CHtmlWriter {
    void AddTitleToHead(const char* title, const char* styleSheet, const char* headTag, const char* images) override {
        CHtmlWriter::AddTitleToHead(title, styleSheet, headTag, images);
        AddBrowserSupport();
    }
};

static void AddSection(CHtmlWriter& page, const char* title, const char* text) {
    page.AddDropdownTitle(2, title);  // what the reader clicks on
    page.StartDropdownText();         // what opens
    page.AddParagraph(text);          // texts are escaped: "<" and "&" may stand in them as they are
    page.EndDropdownText();
}

static void WriteReport(const CString& folder) {
    QvCreateDirectory(folder);
    CHtmlAssets::CopyTo(folder);

    Report page;
    page.SetFilename(folder + "\\index.html");  // from now on the page is written as it grows
    page.OpenTag("html", "lang=\"en\"");
    page.AddTitle("Fruit & prices", "qvcommon.css", nullptr, ".");
    page.OpenTag("body");
    page.AddHeading(1, "Fruit & prices");

    page.SetDropdowns(1, ".");  // "." holds the pictures of open and closed sections
    AddSection(page, "Apples", "Prices stay < 3 this year.");
    AddSection(page, "Pears", "None left.");
    page.AddDropdownCookie();  // remembers what the reader opened

    // Whatever has no operation of its own goes in as markup. Escaping is yours then.
    page.AddFormattedText("<hr>" + CHtmlWriter::Clean("Apples & pears Ltd."));

    page.CloseTag("body");
    page.CloseTag("html");
    page.CommitFile();  // the one place that tells of a full disk: the destructor keeps quiet
}

int main(int argc, char** argv) try {
    std::setlocale(LC_ALL, "");  // texts are in the code page of the locale: set it before anything else
    if (argc != 2) {
        std::fputs("usage: report_page FOLDER\n", stderr);
        return 2;
    }
    WriteReport(CFileUtils::GetLibraryPath(argv[1]));  // paths from outside come in the system's own form
} catch (CException* error) {  // the library throws pointers; who catches one ends it with Delete
    char reason[512] = {};
    error->GetErrorMessage(reason, sizeof reason - 1);
    error->Delete();
    std::fprintf(stderr, "%s\n", reason);
    return 1;
}
