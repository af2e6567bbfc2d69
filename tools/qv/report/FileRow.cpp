#include "tools/qv/report/FileRow.h"

#include "qvcommon/HtmlWriter.h"
#include "qvcommon/StringHelper.h"
#include "tools/qv/Utf8Path.h"
#include "tools/qv/Visible.h"

namespace qv::tool {
namespace {

/// Returns eight digits, or the reason why the file has no checksum.
CString ChecksumText(const FileEntry& file) {
    return file.noChecksum.empty() ? Checksum(file.checksum)
                                   : CHtmlWriter::CleanUtf8(Utf8FromArgument(file.noChecksum));
}

}  // namespace

const FileKind& KindOf(const FileEntry& file) {
    switch (file.link) {
        case LinkKind::ToFile: return kLinkToFile;
        case LinkKind::ToFolder: return kLinkToFolder;
        case LinkKind::Broken: return kBrokenLink;
        default: return KindOf(std::string_view(file.name));
    }
}

CString AddressOf(const FolderEntry& folder, const CString& linkPrefix) {
    return folder.path.empty() ? linkPrefix : linkPrefix + CStringHelper::EscapePath(folder.path + '/');
}

CString LinkTo(const FileEntry& file, const CString& folderAddress) {
    return "<a href=\"" + folderAddress + CStringHelper::EscapePath(file.name) + "\">" +
           CHtmlWriter::CleanUtf8(VisibleOnPage(file.name)) + "</a>";
}

void AppendRow(CString& html, const FileEntry& file, const CString& folderAddress) {
    const FileKind& kind = KindOf(file);
    html += kind.isShownByBrowsers ? "\n<tr class=picture><td>" : "\n<tr><td>";
    for (const CString& part :
         {LinkTo(file, folderAddress), "<td>" + CString(kind.name), "<td data-v=" + CString(std::to_string(file.size)),
          ">" + Size(file.size), "<td data-v=" + CString(std::to_string(file.modified)), ">" + Date(file.modified),
          "<td>" + ChecksumText(file)})
        html += part;
}

}  // namespace qv::tool
