#include "tools/qv/report/ReportPage.h"

#include <algorithm>

#include "qvcommon/HtmlTreeMenu.h"
#include "qvcommon/NavBar.h"
#include "tools/qv/Utf8Path.h"
#include "tools/qv/report/SectionScript.h"

namespace qv::tool {
namespace {

CString FolderId(std::size_t index) {
    return "folder-" + CString(std::to_string(index));
}

std::string LastName(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

CString Summary(const FolderTotals& totals) {
    return Counted(totals.files, "file") + ", " + Size(totals.bytes);
}

}  // namespace

CString FolderMenu(const std::vector<FolderEntry>& folders, const std::string& rootName) {
    CHtmlTreeBuilder menu;
    std::vector<CHtmlTreeNode*> way{&menu};
    for (std::size_t i = 0; i < folders.size(); ++i) {
        const FolderEntry& folder = folders[i];
        const CString link = folder.files.empty() ? CString() : "#" + FolderId(i);
        way.resize(static_cast<std::size_t>(folder.depth) + 1);
        const std::string name = folder.path.empty() ? rootName : LastName(folder.path);
        // What leads to the selected node is open at first: the outermost folder.
        way.push_back(way.back()->AddNode(new CHtmlTreeNode(CHtmlWriter::CleanScriptUtf8(VisibleOnPage(name)),
                                                            (CString(ReportPage::kAssetFolder) + "/folder.gif"), link,
                                                            folder.path.empty())));
    }
    return menu.GetHtml();
}

const char* ReportPage::NameOf(FileOrder order) {
    switch (order) {
        case FileOrder::Size: return "by-size.html";
        case FileOrder::Date: return "by-date.html";
        default: return "index.html";
    }
}

void ReportPage::AddTitleToHead(const char* title, const char*, const char*, const char*) {
    AddTag("meta", "charset=\"utf-8\"");
    AddTag("meta", "name=\"viewport\" content=\"width=device-width, initial-scale=1\"");
    OpenTag("title");
    AddUtf8(title);
    CloseTag("title");
    for (const char* const sheet : {"qvcommon.css", kStyleSheet})
        AddTag("link", "rel=\"stylesheet\" href=\"" + CString(kAssetFolder) + '/' + sheet + '"');
    AddFormattedText(CHtmlTreeBuilder().GetDropdownScript(kAssetFolder));
    AddDropdownScript(kAssetFolder);
    AddBrowserSupport();
    AddFormattedText(kSectionScript);
}

void ReportPage::Write(const std::vector<FolderRows>& folders, const CString& menu) {
    AddFormattedText("<!DOCTYPE html>\n");
    OpenTag("html", "lang=\"en\"");
    AddTitle(m_header.title.c_str());
    OpenTag("body", "class=\"report\"");
    AddPopupScript();
    OpenTag("header");
    OpenTag("h1");
    AddUtf8(m_header.title);
    CloseTag("h1");
    AddSummary(folders.front().folder->overall, folders.size());
    CloseTag("header");
    OpenTag("nav", "class=\"folders\" aria-label=\"Folders\"");
    AddFormattedText(menu);
    CloseTag("nav");
    OpenTag("main");
    AddOrders();
    for (std::size_t i = 0; i < folders.size(); ++i)
        if (!folders[i].files.empty() || !folders[i].folder->isReadable) AddFolder(folders[i], i);
    AddLeftOut();
    AddKinds(folders);
    CloseTag("main");
    AddDropdownCookie();
    AddFormattedText("<script>openAtFirst()</script>");
    CloseTag("body");
    CloseTag("html");
    AddFormattedText("\n");
}

void ReportPage::AddSummary(const FolderTotals& totals, std::size_t folders) {
    OpenTag("p", "class=\"summary\"");
    OpenTag("code");
    AddUtf8(m_header.folder);
    CloseTag("code");
    AddFormattedText(" &middot; " + Counted(totals.files, "file") + " in " + Counted(folders, "folder") + " &middot; " +
                     Size(totals.bytes) + " (" + Counted(totals.bytes, "byte") + ") &middot; written " +
                     Date(m_header.written));
    if (!m_leftOut.empty())
        AddFormattedText(" &middot; <A href=\"#left-out\">" + Number(m_leftOut.size()) + " left out</A>");
    CloseTag("p");
}

void ReportPage::AddOrders() {
    CGroupNavBar bar("", "");
    bar.SetName("Order");
    bar.SetGroups({"Name", "Size", "Date"},
                  {NameOf(FileOrder::Name), NameOf(FileOrder::Size), NameOf(FileOrder::Date)});
    bar.SetOption(NameOf(m_order));
    bar.SetAllowRollup(0);
    OpenTag("div", "class=\"tools\"");
    OpenTag("nav", "class=\"navBar\" aria-label=\"Order of the files\"");
    bar.GenerateHtml(*this);
    CloseTag("nav");
    AddFormattedText(
        "<span class=\"all\"><button type=\"button\" onclick=\"setAll(true)\">Open all</button>"
        "<button type=\"button\" onclick=\"setAll(false)\">Close all</button></span>");
    CloseTag("div");
}

void ReportPage::OpenSection(std::string_view title, const CString& summary) {
    AddFormattedText("\n\n");
    OpenDropdownSection();
    OpenDropdownHotspot();
    OpenTag("h2");
    AddDropdownImage(kAssetFolder);
    AddUtf8(title);
    AddFormattedText(" <small>" + summary + "</small>");
    CloseTag("h2");
    CloseDropdownHotspot();
    OpenDropdownText();
}

void ReportPage::CloseSection() {
    CloseDropdownText();
    CloseDropdownSection();
}

void ReportPage::AddFolder(const FolderRows& rows, std::size_t index) {
    const FolderEntry& folder = *rows.folder;
    OpenSection(folder.path.empty() ? m_header.folder : folder.path, Summary(folder.own));
    AddBookmark(FolderId(index));
    if (!folder.isReadable) AddFormattedText("<p><em>This folder could not be read to its end.</em></p>");
    AddPictures(rows);
    OpenTag("table", "class=\"files\"");
    AddColumns({"Name", "Kind", "Size", "Changed", "CRC-32"});
    OpenTag("tbody");
    // A kind is explained where a folder first has it.
    std::map<const FileKind*, bool> explained;
    for (const FileRow& row : rows.files) {
        bool& known = explained[row.kind];
        AddFormattedText(row.begin);
        AddFormattedText(known ? row.kind->name : std::string_view(ExplainedKind(*row.kind)));
        AddFormattedText(row.end);
        known = true;
    }
    CloseTag("tbody");
    CloseTag("table");
    CloseSection();
}

void ReportPage::AddPictures(const FolderRows& rows) {
    const auto isPicture = [](const FileRow& row) { return !row.thumbnail.IsEmpty(); };
    if (std::none_of(rows.files.begin(), rows.files.end(), isPicture)) return;
    OpenTag("div", "class=\"pictures\"");
    for (const FileRow& row : rows.files) AddFormattedText(row.thumbnail);
    CloseTag("div");
}

void ReportPage::AddLeftOut() {
    if (m_leftOut.empty()) return;
    OpenSection("Left out", Number(m_leftOut.size()));
    AddBookmark("left-out");
    OpenTag("table", "class=\"files\"");
    AddColumns({"Path", "Reason"});
    OpenTag("tbody");
    for (const LeftOutEntry& entry : m_leftOut)
        AddFormattedText("\n<tr><td>" + CleanUtf8(VisibleOnPage(entry.path)) + "</td><td>" +
                         CleanUtf8(Utf8FromArgument(entry.reason)) + "</td></tr>");
    CloseTag("tbody");
    CloseTag("table");
    CloseSection();
}

const CString& ReportPage::ExplainedKind(const FileKind& kind) {
    const auto [place, isNew] = m_explainedKinds.try_emplace(&kind);
    if (isNew) place->second = GetGlossarizedText(kind.name, {kind.term}, {kind.explanation});
    return place->second;
}

void ReportPage::AddKinds(const std::vector<FolderRows>& folders) {
    std::map<std::string_view, std::pair<const FileKind*, FolderTotals>>
        kinds;  // by name: several extensions are one kind
    for (const FolderRows& rows : folders)
        for (const FileRow& row : rows.files) {
            auto& [kind, totals] = kinds[row.kind->name];
            kind = row.kind;
            totals.Add({1, row.file->size});
        }
    OpenSection("All kinds of files", Summary(folders.front().folder->overall));
    OpenTag("table", "class=\"kinds\"");
    AddColumns({"Kind", "Files", "Size"});
    OpenTag("tbody");
    for (const auto& [name, entry] : kinds)
        AddFormattedText("\n<tr><td>" + ExplainedKind(*entry.first) + "</td><td class=\"number\">" +
                         Number(entry.second.files) + "</td><td class=\"number\">" + Size(entry.second.bytes) +
                         "</td></tr>");
    CloseTag("tbody");
    CloseTag("table");
    CloseSection();
}

void ReportPage::AddColumns(std::initializer_list<const char*> titles) {
    OpenTag("thead");
    OpenTag("tr");
    for (const char* const title : titles) {
        OpenTag("th", "scope=\"col\"");
        AddText(title);
        CloseTag("th");
    }
    CloseTag("tr");
    CloseTag("thead");
}

}  // namespace qv::tool
