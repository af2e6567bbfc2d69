// Navigation bars: the reader's choice on the page is passed to the program, which writes the page again.
//
//   report_bars FOLDER [ADDRESS]
//
// Writes FOLDER/index.html. ADDRESS is that of the clicked link, such as "fruit:by=Price".

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <vector>

#include "qvcommon/AppRegistry.h"
#include "qvcommon/Exceptions.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/HtmlAssets.h"
#include "qvcommon/HtmlWriter.h"
#include "qvcommon/NavBar.h"
#include "qvcommon/framework/WinApp.h"

class Page : public CHtmlWriter {
    void AddTitleToHead(const char* title, const char* styleSheet, const char* headTag, const char* images) override {
        CHtmlWriter::AddTitleToHead(title, styleSheet, headTag, images);
        AddBrowserSupport();
    }
};

// The bar stores its choice in the application's profile, so the next run begins with it.
class OrderBar : public CStringOptionNavBar {
public:
    OrderBar() : CStringOptionNavBar("Fruit", "Order") {
        SetName("Order");
        SetOptions({"Name", "Price"});
        SetCommand("fruit:by=");  // the prefix of each choice's address
        SetRollupGuid("order");   // a constant name, so that the bar stays open or closed
        SetSelectionImage("closed.gif");
        if (GetOption().IsEmpty()) SetOption("Name");
    }
};

struct Fruit {
    const char* name;
    double price;
};

static void AddTable(CHtmlWriter& page, const CString& order) {
    std::vector<Fruit> fruit = {{"Apples", 2.80}, {"Figs", 6.10}, {"Pears", 2.40}};
    if (order == "Price") std::ranges::sort(fruit, {}, &Fruit::price);
    page.OpenBulletList();
    for (const auto& [name, price] : fruit) {
        CString line;
        line.Format("%s: %.2f", name, price);
        page.AddLine(CHtmlWriter::Clean(line));
    }
    page.CloseBulletList();
}

static void WritePage(const CString& folder, OrderBar& bar) {
    QvCreateDirectory(folder);
    CHtmlAssets::CopyTo(folder);

    Page page;
    page.SetFilename(folder + "\\index.html");
    page.OpenTag("html", "lang=\"en\"");
    page.AddTitle("Fruit", "qvcommon.css");
    page.OpenTag("body");
    CNavBar::AddRollupScript("rolledup.gif", "rolleddown.gif", page);  // before the bars, once per page
    bar.GenerateHtml(page);
    CNavBar::AddRollupScriptCookie(page);  // after the bars: remembers which are open
    AddTable(page, bar.GetOption());
    page.CloseTag("body");
    page.CloseTag("html");
    page.CommitFile();
}

int main(int argc, char** argv) {
    QvReportUncaught();
    std::setlocale(LC_ALL, "");
    if (argc != 2 && argc != 3) {
        std::fputs("usage: report_bars FOLDER [ADDRESS]\n", stderr);
        return 2;
    }
    const CWinApp application("ReportBars");
    SetRegistryKey("QvCommon Examples");

    // A program that shows the page in a browser control passes each address here before the control navigates, cancels
    // the navigation if the result is not 0, and shows the page again. Other programs register the scheme "fruit:" with
    // the desktop, which then starts them with the address. Addresses of no bar return 0.
    OrderBar bar;
    if (argc == 3 && !bar.ProcessCommand(argv[2])) {
        std::fprintf(stderr, "no choice of this page: %s\n", argv[2]);
        return 1;
    }
    WritePage(CFileUtils::GetLibraryPath(argv[1]), bar);
}
