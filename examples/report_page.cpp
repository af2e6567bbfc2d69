// A report page with a tree menu, collapsible sections, and charts.
//
//   report_page FOLDER
//
// Writes FOLDER/index.html, and beside it the pictures, script and style sheet that such pages use.

#include <clocale>
#include <cstdio>

#include "qvcommon/Exceptions.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/Graph.h"
#include "qvcommon/HtmlAssets.h"
#include "qvcommon/HtmlTreeMenu.h"
#include "qvcommon/HtmlWriter.h"

// Derived classes extend the head of the page: here with the support for modern browsers, and the script of the menu.
class Report : public CHtmlWriter {
public:
    CHtmlTreeBuilder m_menu;

private:
    void AddTitleToHead(const char* title, const char* styleSheet, const char* headTag, const char* images) override {
        CHtmlWriter::AddTitleToHead(title, styleSheet, headTag, images);
        AddBrowserSupport();
        AddFormattedText(m_menu.GetDropdownScript("."));
    }
};

// The menu's texts are inserted into a script verbatim: escape untrusted ones with CleanScriptUtf8.
static void AddMenu(Report& page) {
    CHtmlTreeNode* const fruit = page.m_menu.AddNode(new CHtmlTreeNode("Fruit", "", "", 0));
    fruit->AddNode(new CHtmlTreeNode("Apples", "", "#apples", 1));  // 1: the current page, so the tree is expanded here
    fruit->AddNode(new CHtmlTreeNode("Pears", "", "#pears", 0));
    page.AddFormattedText(page.m_menu.GetHtml());
}

static void AddSection(CHtmlWriter& page, const char* anchor, const char* title, const char* text) {
    page.AddDropdownTitle(2, title);  // the clickable title
    page.StartDropdownText();         // the collapsible body
    page.AddBookmark(anchor);         // a link to it opens the section
    page.AddParagraph(text);          // texts are escaped, so "<" and "&" are allowed
    page.EndDropdownText();
}

static void AddChart(CHtmlWriter& page) {
    CBarGraph chart;
    chart.SetTitle("Sold, in tonnes");
    chart.SetCategories({"Spring", "Summer", "Autumn"});
    chart.AddSeries("Apples", {3, 1, 7});
    chart.AddSeries("Pears", {1, 2, 4.5});
    chart.WriteTo(page);  // inline SVG, which follows the reader's light or dark setting
}

static void WriteReport(const CString& folder) {
    QvCreateDirectory(folder);
    CHtmlAssets::CopyTo(folder);

    Report page;
    page.SetFilename(folder + "\\index.html");  // from now on the page is written incrementally
    page.OpenTag("html", "lang=\"en\"");
    page.AddTitle("Fruit & prices", "qvcommon.css", nullptr, ".");
    page.OpenTag("body");
    page.AddHeading(1, "Fruit & prices");
    AddMenu(page);
    AddChart(page);

    page.SetDropdowns(1, ".");  // "." has the pictures of open and closed sections
    AddSection(page, "apples", "Apples", "Prices stay < 3 this year.");
    AddSection(page, "pears", "Pears", "None left.");
    page.AddDropdownCookie();  // remembers which sections are open

    // Anything without its own operation is added as markup, which you must escape.
    page.AddFormattedText("<hr>" + CHtmlWriter::Clean("Apples & pears Ltd."));

    page.CloseTag("body");
    page.CloseTag("html");
    page.CommitFile();  // reports a full disk; the destructor ignores failures
}

int main(int argc, char** argv) {
    QvReportUncaught();
    std::setlocale(LC_ALL, "");  // texts are in the code page of the locale: set it first
    if (argc != 2) {
        std::fputs("usage: report_page FOLDER\n", stderr);
        return 2;
    }
    WriteReport(CFileUtils::GetLibraryPath(argv[1]));  // paths from outside have the system's form
}
