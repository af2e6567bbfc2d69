#include "tools/qv/report/ReportPage.h"

#include <algorithm>

#include "qvcommon/StringHelper.h"
#include "qvcommon/framework/DateTime.h"

namespace qv::tool {
namespace {

bool IsAscii(char c) {
    return static_cast<unsigned char>(c) < 0x80;
}

// Escapes the ASCII parts only: the library would read the rest in the process's code page.
template <class Escape>
CString EscapeUtf8(std::string_view text, Escape escape) {
    CString out;
    for (auto from = text.begin(); from != text.end();) {
        const auto end = std::find_if_not(from, text.end(), IsAscii);
        const auto next = std::find_if(end, text.end(), IsAscii);
        out += escape(std::string_view(from, end));
        out += std::string_view(end, next);
        from = next;
    }
    return out;
}

CString Number(std::uintmax_t value) {
    CString text;
    text.Format("%d", value);
    for (int i = text.GetLength() - 3; i > 0; i -= 3) text.Insert(i, "\xE2\x80\xAF");  // narrow no-break space
    return text;
}

CString Counted(std::uintmax_t count, const char* one) {
    return Number(count) + " " + one + (count == 1 ? "" : "s");
}

CString Size(std::uintmax_t bytes) {
    if (bytes < 1024) return Counted(bytes, "byte");
    CDoubleArray thresholds;
    CStringArray units;
    double threshold = 1;
    for (const char* const unit : {"KB", "MB", "GB", "TB", "PB"}) thresholds.Add(threshold *= 1024), units.Add(unit);
    return CStringHelper::RebaseUnits(static_cast<double>(bytes), "bytes", thresholds, units, 1, -2);
}

CString Checksum(unsigned long checksum) {
    CString text;
    text.Format("%08X", checksum);
    return text;
}

CString Date(std::time_t time) {
    return COleDateTime(time).Format("%Y-%m-%d %H:%M");
}

bool IsPicture(const std::string& name) {
    CString extension(name.substr(std::min(name.rfind('.'), name.size())));
    extension.MakeLower();
    const std::string_view known[] = {".png", ".gif", ".jpg", ".jpeg", ".svg", ".webp", ".bmp"};
    return std::any_of(std::begin(known), std::end(known), [&](std::string_view e) { return extension == e; });
}

std::string FolderId(std::size_t index) {
    return "folder-" + std::to_string(index);
}

}  // namespace

std::string EncodeAddress(std::string_view path) {
    constexpr std::string_view plain = "-._~/", digits = "0123456789ABCDEF";
    std::string out;
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        const bool alphanumeric = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        if (alphanumeric || plain.find(c) != plain.npos)
            out += c;
        else
            out += '%', out += digits[byte >> 4], out += digits[byte & 15];
    }
    return out;
}

void ReportPage::AddUtf8(std::string_view text) {
    AddFormattedText(EscapeUtf8(text, Clean));
}

void ReportPage::AddTitleToHead(const char* title, const char* styleSheet, const char*, const char*) {
    AddTag("meta", "charset=\"utf-8\"");
    AddTag("meta", "name=\"viewport\" content=\"width=device-width, initial-scale=1\"");
    AddTag("meta", "name=\"color-scheme\" content=\"light dark\"");
    OpenTag("title");
    AddUtf8(title);
    CloseTag("title");
    AddTag("link", "rel=\"stylesheet\" href=\"" + CString(styleSheet) + "\"");
}

std::string ReportPage::Address(const FolderEntry& folder, const FileEntry& file) const {
    return m_header.linkPrefix + EncodeAddress(folder.path.empty() ? file.name : folder.path + '/' + file.name);
}

std::string ReportPage::Name(const FolderEntry& folder) const {
    return folder.path.empty() ? m_header.folder : folder.path;
}

void ReportPage::AddCell(const CString& text, const char* attributes) {
    OpenTag("td", attributes);
    AddFormattedText(text);
    CloseTag("td");
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

void ReportPage::Write(const std::vector<FolderEntry>& folders) {
    AddFormattedText("<!DOCTYPE html>\n");
    OpenTag("html", "lang=\"en\"");
    AddTitle(m_header.title.c_str(), m_header.styleSheet.c_str());
    AddFormattedText("\n");
    OpenTag("body");
    OpenTag("header");
    OpenTag("h1");
    AddUtf8(m_header.title);
    CloseTag("h1");
    AddSummary(folders.front().overall);
    CloseTag("header");
    OpenTag("main");
    AddContents(folders);
    for (std::size_t i = 0; i < folders.size(); ++i)
        if (!folders[i].files.empty()) AddFolder(folders[i], i);
    CloseTag("main");
    AddTotals(folders);
    CloseTag("body");
    CloseTag("html");
    AddFormattedText("\n");
}

void ReportPage::AddSummary(const FolderTotals& totals) {
    OpenTag("p", "class=\"summary\"");
    OpenTag("code");
    AddUtf8(m_header.folder);
    CloseTag("code");
    AddFormattedText(" &middot; " + Counted(totals.files, "file") + " &middot; " + Size(totals.bytes) + " &middot; " +
                     Date(m_header.written));
    CloseTag("p");
}

void ReportPage::AddContents(const std::vector<FolderEntry>& folders) {
    AddFormattedText("\n");
    OpenTag("nav", "aria-labelledby=\"contents\"");
    AddHeading(2, "Contents", "id=\"contents\"");
    OpenTag("table", "class=\"contents\"");
    AddColumns({"Folder", "Files", "Size", "With subfolders"});
    OpenTag("tbody");
    for (std::size_t i = 0; i < folders.size(); ++i) AddContentsRow(folders[i], i);
    CloseTag("tbody");
    CloseTag("table");
    CloseTag("nav");
}

void ReportPage::AddContentsRow(const FolderEntry& folder, std::size_t index) {
    AddFormattedText("\n");
    OpenTag("tr");
    OpenTag("th", "scope=\"row\" style=\"--depth:" + CString(std::to_string(folder.depth)) + "\"");
    const std::string name = Name(folder), last = folder.path.empty() ? name : name.substr(name.rfind('/') + 1);
    if (!folder.files.empty()) OpenHotlink(("#" + FolderId(index)).c_str());
    AddUtf8(last);
    if (!folder.files.empty()) CloseHotlink();
    if (!folder.isReadable) AddFormattedText(" <em>could not be read to its end</em>");
    CloseTag("th");
    AddCell(folder.files.empty() ? CString() : Number(folder.own.files));
    AddCell(folder.files.empty() ? CString() : Size(folder.own.bytes));
    AddCell(Size(folder.overall.bytes));
    CloseTag("tr");
}

void ReportPage::AddFolder(const FolderEntry& folder, std::size_t index) {
    AddFormattedText("\n\n");
    OpenTag("section", ("aria-labelledby=\"" + FolderId(index) + '"').c_str());
    OpenTag("h2", ("id=\"" + FolderId(index) + '"').c_str());
    AddUtf8(Name(folder));
    CloseTag("h2");
    AddPictures(folder);
    OpenTag("table", "class=\"files\"");
    AddColumns({"Name", "Size", "Bytes", "Changed", "CRC-32"});
    OpenTag("tbody");
    for (const FileEntry& file : folder.files) AddFileRow(folder, file);
    CloseTag("tbody");
    CloseTag("table");
    CloseTag("section");
}

void ReportPage::AddPictures(const FolderEntry& folder) {
    if (std::none_of(folder.files.begin(), folder.files.end(), [](const FileEntry& f) { return IsPicture(f.name); }))
        return;
    OpenTag("div", "class=\"pictures\"");
    for (const FileEntry& file : folder.files) {
        if (!IsPicture(file.name)) continue;
        const std::string address = Address(folder, file);
        AddFormattedText("\n");
        OpenHotlink(address.c_str());
        AddTag("img", "src=\"" + CString(address) + "\" alt=\"" + EscapeUtf8(file.name, CleanFloatOver) +
                          "\" title=\"" + EscapeUtf8(file.name, CleanFloatOver) + "\" loading=\"lazy\"");
        CloseHotlink();
    }
    CloseTag("div");
}

void ReportPage::AddFileRow(const FolderEntry& folder, const FileEntry& file) {
    AddFormattedText("\n");
    OpenTag("tr");
    OpenTag("td");
    OpenHotlink(Address(folder, file).c_str());
    AddUtf8(file.name);
    CloseHotlink();
    CloseTag("td");
    AddCell(Size(file.size));
    AddCell(Number(file.size), "class=\"number exact\"");
    AddCell(Date(file.modified));
    AddCell(Checksum(file.checksum), "class=\"number exact\"");
    CloseTag("tr");
}

void ReportPage::AddTotals(const std::vector<FolderEntry>& folders) {
    const FolderTotals& totals = folders.front().overall;
    AddFormattedText("\n\n");
    OpenTag("footer");
    OpenTag("p");
    AddFormattedText("Total: " + Counted(totals.files, "file") + " in " + Counted(folders.size(), "folder") + ", " +
                     Size(totals.bytes) + " (" + Counted(totals.bytes, "byte") + ")");
    CloseTag("p");
    CloseTag("footer");
}

}  // namespace qv::tool
