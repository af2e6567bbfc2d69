#pragma once

#include <map>

#include "qvcommon/HtmlWriter.h"
#include "tools/qv/Visible.h"
#include "tools/qv/report/FolderRows.h"

namespace qv::tool {

/// What a report says besides the tree itself. All texts are UTF-8.
struct ReportHeader {
    std::string title;
    std::string folder;  ///< shown below the title
    std::int64_t written = 0;
};

/// One of the pages of a report: the same sections, a folder each, with their files in one order. In UTF-8, whatever the
/// process's code page is.
class ReportPage : public CHtmlWriter {
public:
    /// The folder beside the pages that holds what they all need.
    static constexpr const char* kAssetFolder = "report-files";
    static constexpr const char* kStyleSheet = "report.css";
    /// The page's file name.
    static const char* NameOf(FileOrder order);

    /// Keeps references to both.
    ReportPage(const ReportHeader& header, const std::vector<LeftOutEntry>& leftOut, FileOrder order)
        : m_header(header), m_leftOut(leftOut), m_order(order) {}

    /// @param menu  the script of the tree menu.
    void Write(const std::vector<FolderRows>& folders, const CString& menu);
    /// Declares the character set and the width; then the title, the style sheets and the scripts.
    void AddTitleToHead(const char* title, const char* stylesheet, const char* headTag,
                        const char* dropdownImageDir) override;

private:
    void AddUtf8(std::string_view text) { AddFormattedText(CleanUtf8(VisibleOnPage(text))); }
    void AddSummary(const FolderTotals& totals, std::size_t folders);
    void AddOrders();
    void OpenSection(std::string_view title, const CString& summary);
    void CloseSection();
    void AddFolder(const FolderRows& rows, std::size_t index);
    void AddPictures(const FolderRows& rows);
    void AddLeftOut();
    void AddKinds(const std::vector<FolderRows>& folders);
    void AddColumns(std::initializer_list<const char*> titles);
    const CString& ExplainedKind(const FileKind& kind);

    const ReportHeader& m_header;
    const std::vector<LeftOutEntry>& m_leftOut;
    FileOrder m_order;
    std::map<const FileKind*, CString> m_explainedKinds;
};

/// The script of the menu of all folders; each leads to the section of its files on the same page.
CString FolderMenu(const std::vector<FolderEntry>& folders, const std::string& rootName);

}  // namespace qv::tool
