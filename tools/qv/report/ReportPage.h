#pragma once

#include "qvcommon/HtmlWriter.h"
#include "tools/qv/Visible.h"
#include "tools/qv/report/Overview.h"

namespace qv::tool {

/// The content of a report besides the tree. All texts are UTF-8.
struct ReportHeader {
    std::string title;
    std::string folder;  ///< shown below the title
    std::int64_t written = 0;
    CString linkPrefix;  ///< the encoded address of the folder relative to the page, with a final "/"
};

/// The page of a report: an overview, then a section for each folder with its files. In UTF-8, regardless of the
/// process's code page.
///
/// The tables of files are in noscript elements: without scripts the browser shows them all, with scripts it builds
/// none of them until report.js needs a part. So a page of 200,000 files opens as fast as one of a few hundred.
class ReportPage : public CHtmlWriter {
public:
    /// The folder beside the page with its assets.
    static constexpr const char* kAssetFolder = "report-files";
    static constexpr const char* kFileName = "index.html";

    /// Keeps references to both.
    ReportPage(const ReportHeader& header, const FolderTree& tree);

    void Write();
    /// Declares the character set and the viewport; then the title, the style sheets and the scripts.
    void AddTitleToHead(const char* title, const char* stylesheet, const char* headTag,
                        const char* dropdownImageDir) override;

private:
    void AddUtf8(std::string_view text) { AddFormattedText(CleanUtf8(VisibleOnPage(text))); }
    const FolderTotals& Totals() const { return m_tree.folders.front().overall; }
    /// Returns the outermost folder's name.
    std::string RootName() const;
    CString TitleOf(const FolderEntry& folder) const;
    void AddStyleSheet(const char* name);
    void AddMenu();
    void AddSummary();
    void AddOverview();
    /// @param style  a class of the table.
    void OpenTop(const char* style, const char* caption, std::initializer_list<const char*> titles);
    CString LinkToFolder(std::size_t index) const;
    void AddTopFolders();
    void AddTopFiles(const char* style, const char* caption, const char* column, const std::vector<FileOfFolder>& files,
                     CString (*value)(const FileEntry& file));
    void AddTools();
    void OpenSection(std::string_view title, const CString& summary);
    void CloseSection();
    /// In groups, so that the layout of a section takes a browser as long among many sections as among a few.
    void AddFolders();
    void AddFolder(std::size_t index);
    void AddLeftOut();
    void AddKinds();

    const ReportHeader& m_header;
    const FolderTree& m_tree;
    const Overview m_overview;
};

}  // namespace qv::tool
