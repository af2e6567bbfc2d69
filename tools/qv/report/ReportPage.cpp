#include "tools/qv/report/ReportPage.h"

#include "qvcommon/HtmlTreeMenu.h"
#include "tools/qv/Utf8Path.h"
#include "tools/qv/Visible.h"
#include "tools/qv/report/FileRow.h"
#include "tools/qv/report/OverviewCharts.h"
#include "tools/qv/report/ReportAssets.h"

namespace qv::tool {
namespace {

constexpr const char* kTableHead =
    "<table class=\"files\"><thead><tr><th>Name<th>Kind<th>Size<th>Changed<th>CRC-32<tbody>";

CString FolderId(std::size_t index) {
    return "folder-" + CString(std::to_string(index));
}

std::string LastName(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

CString Summary(const FolderTotals& totals) {
    return Counted(totals.files, "file") + ", " + Size(totals.bytes);
}

bool HasSection(const FolderEntry& folder) {
    return !folder.files.empty() || !folder.isReadable;
}

}  // namespace

ReportPage::ReportPage(const ReportHeader& header, const FolderTree& tree)
    : m_header(header), m_tree(tree), m_overview(MakeOverview(tree.folders, header.written)) {}

std::string ReportPage::RootName() const {
    const std::string name = LastName(m_header.folder);
    return name.empty() ? m_header.folder : name;
}

CString ReportPage::TitleOf(const FolderEntry& folder) const {
    return CleanUtf8(VisibleOnPage(folder.path.empty() ? m_header.folder : folder.path));
}

void ReportPage::AddTitleToHead(const char* title, const char*, const char*, const char*) {
    AddTag("meta", "charset=\"utf-8\"");
    AddTag("meta", "name=\"viewport\" content=\"width=device-width, initial-scale=1\"");
    OpenTag("title");
    AddUtf8(title);
    CloseTag("title");
    AddStyleSheet("qvcommon.css");
    for (const ReportAsset& asset : ReportAssets())
        if (std::string_view(asset.name).ends_with(".css")) AddStyleSheet(asset.name);
    AddFormattedText(
        "<noscript><style>#DropDownText { display: block !important } "
        ".folders, .tools, #DropDownImage { display: none }</style></noscript>");
    AddFormattedText(CHtmlTreeBuilder().GetDropdownScript(kAssetFolder));
    AddDropdownScript(kAssetFolder);
    AddBrowserSupport();
    for (const ReportAsset& asset : ReportAssets())
        if (std::string_view(asset.name).ends_with(".js"))
            AddFormattedText("<script src=\"" + CString(kAssetFolder) + '/' + asset.name + "\"></script>");
}

void ReportPage::AddStyleSheet(const char* name) {
    AddTag("link", "rel=\"stylesheet\" href=\"" + CString(kAssetFolder) + '/' + name + '"');
}

void ReportPage::Write() {
    AddFormattedText("<!DOCTYPE html>\n");
    OpenTag("html", "lang=\"en\"");
    AddTitle(m_header.title.c_str());
    OpenTag("body", "class=\"report\"");
    AddPopupScript();
    OpenTag("header");
    OpenTag("h1");
    AddUtf8(m_header.title);
    CloseTag("h1");
    AddSummary();
    CloseTag("header");
    AddMenu();
    OpenTag("main");
    AddOverview();
    AddTools();
    OpenTag("div", "id=\"folders\"");
    AddFolders();
    AddLeftOut();
    AddKinds();
    CloseTag("div");
    CloseTag("main");
    AddDropdownCookie();
    AddFormattedText("<script>report.start()</script>");
    CloseTag("body");
    CloseTag("html");
    AddFormattedText("\n");
}

void ReportPage::AddMenu() {
    CHtmlTreeBuilder menu;
    std::vector<CHtmlTreeNode*> way{&menu};
    const CString picture = CString(kAssetFolder) + "/folder.gif";
    for (std::size_t i = 0; i < m_tree.folders.size(); ++i) {
        const FolderEntry& folder = m_tree.folders[i];
        way.resize(static_cast<std::size_t>(folder.depth) + 1);
        const std::string name = folder.path.empty() ? RootName() : LastName(folder.path);
        const CString label = CleanScriptUtf8(VisibleOnPage(name)) + "\\t" + Size(folder.overall.bytes);
        // The ancestors of the selected node, the outermost folder, are initially open.
        way.push_back(way.back()->AddNode(new CHtmlTreeNode(
            label, picture, HasSection(folder) ? "#" + FolderId(i) : CString(), folder.path.empty())));
    }
    OpenTag("nav", "class=\"folders\" aria-label=\"Folders\"");
    AddFormattedText(menu.GetHtml());
    CloseTag("nav");
}

void ReportPage::AddSummary() {
    const FolderTotals& totals = Totals();
    OpenTag("p", "class=\"summary\"");
    OpenTag("code");
    AddUtf8(m_header.folder);
    CloseTag("code");
    AddFormattedText(" &middot; " + Counted(totals.files, "file") + " in " + Counted(m_tree.folders.size(), "folder") +
                     " &middot; " + Size(totals.bytes) + " (" + Counted(totals.bytes, "byte") + ") &middot; written " +
                     Date(m_header.written));
    if (!m_tree.leftOut.empty())
        AddFormattedText(" &middot; <A href=\"#left-out\">" + Number(m_tree.leftOut.size()) + " left out</A>");
    CloseTag("p");
}

void ReportPage::AddOverview() {
    if (!Totals().files) return;
    OpenTag("section", "class=\"overview\" aria-label=\"Overview\"");
    for (const CString& chart : DrawCharts(m_overview, m_tree.folders))
        AddFormattedText("\n<figure>" + chart + "</figure>");
    AddTopFolders();
    AddTopFiles("sizes", "Largest files", "Size", m_overview.largest,
                [](const FileEntry& file) { return Size(file.size); });
    AddTopFiles("dates", "Latest files", "Changed", m_overview.latest,
                [](const FileEntry& file) { return Date(file.modified); });
    CloseTag("section");
}

void ReportPage::OpenTop(const char* style, const char* caption, std::initializer_list<const char*> titles) {
    AddFormattedText("\n<table class=\"top " + CString(style) + "\"><caption>" + caption + "</caption><thead><tr>");
    for (const char* const title : titles) AddFormattedText("<th>" + CString(title));
    AddFormattedText("<tbody>");
}

CString ReportPage::LinkToFolder(std::size_t index) const {
    const std::string& path = m_tree.folders[index].path;
    return "<a href=\"#" + FolderId(index) + "\">" + CleanUtf8(VisibleOnPage(path.empty() ? RootName() : path)) +
           "</a>";
}

void ReportPage::AddTopFolders() {
    if (m_overview.folders.size() < 2) return;
    OpenTop("sums", "Largest folders", {"Name", "Files", "Size"});
    for (const std::size_t index : m_overview.folders) {
        const FolderTotals& own = m_tree.folders[index].own;
        AddFormattedText("\n<tr><td>" + LinkToFolder(index) + "<td>" + Number(own.files) + "<td>" + Size(own.bytes));
    }
    CloseTag("table");
}

void ReportPage::AddTopFiles(const char* style, const char* caption, const char* column,
                             const std::vector<FileOfFolder>& files, CString (*value)(const FileEntry& file)) {
    if (files.empty()) return;
    OpenTop(style, caption, {"Name", "Folder", column});
    for (const FileOfFolder& entry : files)
        AddFormattedText("\n<tr><td>" +
                         LinkTo(*entry.file, AddressOf(m_tree.folders[entry.folder], m_header.linkPrefix)) + "<td>" +
                         LinkToFolder(entry.folder) + "<td>" + value(*entry.file));
    CloseTag("table");
}

void ReportPage::AddTools() {
    AddFormattedText(
        "\n<div class=\"tools\"><label>Filter by name <input type=\"search\" id=\"filter\" "
        "autocomplete=\"off\"></label>"
        "<span class=\"all\"><button type=\"button\" onclick=\"report.setAll(true)\">Open all</button>"
        "<button type=\"button\" onclick=\"report.setAll(false)\">Close all</button></span></div>"
        "\n<section id=\"found\" aria-label=\"Files found\" hidden><p role=\"status\"></p></section>\n");
}

void ReportPage::OpenSection(std::string_view title, const CString& summary) {
    AddFormattedText("\n\n");
    OpenDropdownSection();
    OpenDropdownHotspot();
    OpenTag("h2");
    AddDropdownImage(kAssetFolder);
    AddFormattedText(title);
    AddFormattedText(" <small>" + summary + "</small>");
    CloseTag("h2");
    CloseDropdownHotspot();
    OpenDropdownText();
}

void ReportPage::CloseSection() {
    CloseDropdownText();
    CloseDropdownSection();
}

void ReportPage::AddFolders() {
    constexpr std::size_t kGroup = 100;
    std::size_t sections = 0;
    for (std::size_t i = 0; i < m_tree.folders.size(); ++i) {
        if (!HasSection(m_tree.folders[i])) continue;
        if (sections % kGroup == 0 && sections) CloseTag("div");
        if (sections++ % kGroup == 0) OpenTag("div", "class=\"folder-group\"");
        AddFolder(i);
    }
    if (sections) CloseTag("div");
}

void ReportPage::AddFolder(std::size_t index) {
    const FolderEntry& folder = m_tree.folders[index];
    CString summary = Summary(folder.own);
    if (folder.overall.files != folder.own.files) summary += "; with all folders below " + Summary(folder.overall);
    OpenSection(TitleOf(folder), summary);
    AddBookmark(FolderId(index));
    if (!folder.isReadable) AddFormattedText("<p><em>This folder could not be read to its end.</em></p>");
    if (!folder.files.empty()) {
        CString rows = kTableHead;
        const CString address = AddressOf(folder, m_header.linkPrefix);
        for (const FileEntry& file : folder.files) AppendRow(rows, file, address);
        AddFormattedText("<noscript>");
        AddFormattedText(rows);
        AddFormattedText("\n</table></noscript>");
    }
    CloseSection();
}

void ReportPage::AddLeftOut() {
    if (m_tree.leftOut.empty()) return;
    OpenSection("Left out", Number(m_tree.leftOut.size()));
    AddBookmark("left-out");
    AddFormattedText("<table class=\"left-out\"><thead><tr><th>Path<th>Reason<tbody>");
    for (const LeftOutEntry& entry : m_tree.leftOut)
        AddFormattedText("\n<tr><td>" + CleanUtf8(VisibleOnPage(entry.path)) + "<td>" +
                         CleanUtf8(Utf8FromArgument(entry.reason)));
    CloseTag("table");
    CloseSection();
}

void ReportPage::AddKinds() {
    OpenSection("All kinds of files", Summary(Totals()));
    AddFormattedText("<table class=\"kinds\"><thead><tr><th>Kind<th>Files<th>Size<tbody>");
    for (const auto& [kind, totals] : m_overview.kinds)
        AddFormattedText("\n<tr><td>" + GetGlossarizedText(kind->name, {kind->term}, {kind->explanation}) + "<td>" +
                         Number(totals.files) + "<td>" + Size(totals.bytes));
    CloseTag("table");
    CloseSection();
}

}  // namespace qv::tool
