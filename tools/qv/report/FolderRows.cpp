#include "tools/qv/report/FolderRows.h"

#include <algorithm>

#include "qvcommon/HtmlWriter.h"
#include "qvcommon/StringHelper.h"
#include "tools/qv/Utf8Path.h"
#include "tools/qv/Visible.h"

namespace qv::tool {
namespace {

const FileKind& KindOfEntry(const FileEntry& file) {
    switch (file.link) {
        case LinkKind::ToFile: return kLinkToFile;
        case LinkKind::ToFolder: return kLinkToFolder;
        case LinkKind::Broken: return kBrokenLink;
        default: return KindOf(file.name);
    }
}

CString ChecksumCell(const FileEntry& file) {
    if (file.noChecksum.empty()) return "<td class=\"number exact\">" + Checksum(file.checksum);
    return "<td>" + CHtmlWriter::CleanUtf8(Utf8FromArgument(file.noChecksum));
}

FileRow MakeRow(const FileEntry& file, const CString& folderAddress) {
    const FileKind& kind = KindOfEntry(file);
    const CString address = folderAddress + CStringHelper::EscapePath(file.name);
    const std::string visible = VisibleOnPage(file.name);
    const CString name = CHtmlWriter::CleanUtf8(visible);
    FileRow row{&file, &kind, {}, {}, {}};
    row.begin = "\n<tr><td><A href=\"" + address + "\">" + name + "</A></td><td>";
    row.end = "</td><td class=\"number\" title=\"" + Counted(file.size, "byte") + "\">" + Size(file.size) +
              "</td><td class=\"number\">" + Date(file.modified) + "</td>" + ChecksumCell(file) + "</td></tr>";
    if (kind.isShownByBrowsers) {
        const CString title = CHtmlWriter::CleanFloatOverUtf8(visible);
        row.thumbnail = "\n<A href=\"" + address + "\"><img src=\"" + address + "\" alt=\"" + title + "\" title=\"" +
                        title + "\" loading=\"lazy\" decoding=\"async\"></A>";
    }
    return row;
}

}  // namespace

std::vector<FolderRows> MakeRows(const std::vector<FolderEntry>& folders, const CString& linkPrefix) {
    std::vector<FolderRows> all;
    for (const FolderEntry& folder : folders) {
        FolderRows rows{&folder, {}};
        const CString address = linkPrefix + CStringHelper::EscapePath(folder.path.empty() ? "" : folder.path + '/');
        for (const FileEntry& file : folder.files) rows.files.push_back(MakeRow(file, address));
        all.push_back(std::move(rows));
    }
    return all;
}

void Sort(FolderRows& rows, FileOrder order) {
    std::sort(rows.files.begin(), rows.files.end(), [order](const FileRow& a, const FileRow& b) {
        if (order == FileOrder::Size && a.file->size != b.file->size) return a.file->size > b.file->size;
        if (order == FileOrder::Date && a.file->modified != b.file->modified)
            return a.file->modified > b.file->modified;
        return a.file < b.file;
    });
}

}  // namespace qv::tool
