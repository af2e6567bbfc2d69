#pragma once

#include <string>

#include "qvcommon/HtmlWriter.h"
#include "tools/qv/report/FolderTree.h"

namespace qv::tool {

/// What a report says besides the tree itself. All texts are UTF-8.
struct ReportHeader {
    std::string title;
    std::string folder;      ///< shown below the title
    std::string linkPrefix;  ///< address of the folder as seen from the page, encoded; empty or ending in "/"
    std::string styleSheet;  ///< address of the style sheet
    std::time_t written = 0;
};

/// A page in UTF-8, whatever the process's code page is. Each part of the page is one call.
class ReportPage : public CHtmlWriter {
public:
    explicit ReportPage(ReportHeader header) : m_header(std::move(header)) {}

    void Write(const std::vector<FolderEntry>& folders);
    /// Declares the character set and the width, then the title and the style sheet.
    void AddTitleToHead(const char* title, const char* styleSheet, const char* headTag,
                        const char* dropdownImageDir) override;

private:
    void AddUtf8(std::string_view text);
    void AddSummary(const FolderTotals& totals);
    void AddContents(const std::vector<FolderEntry>& folders);
    void AddContentsRow(const FolderEntry& folder, std::size_t index);
    void AddFolder(const FolderEntry& folder, std::size_t index);
    void AddPictures(const FolderEntry& folder);
    void AddFileRow(const FolderEntry& folder, const FileEntry& file);
    void AddTotals(const std::vector<FolderEntry>& folders);
    void AddColumns(std::initializer_list<const char*> titles);
    void AddCell(const CString& text, const char* attributes = "class=\"number\"");
    std::string Address(const FolderEntry& folder, const FileEntry& file) const;
    std::string Name(const FolderEntry& folder) const;

    ReportHeader m_header;
};

/// The UTF-8 path of a relative address: "/" stays, everything but letters, digits and "-._~" becomes %XX.
std::string EncodeAddress(std::string_view path);

}  // namespace qv::tool
