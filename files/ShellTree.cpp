#include "files/ShellTree.h"

#include "platform/Error.h"
#include "platform/FileCopy.h"
#include "platform/FileStatus.h"
#include "platform/Folder.h"
#include "platform/Path.h"
#include "qvcommon/framework/File.h"
#include "qvcommon/framework/FileFind.h"
#include "qvcommon/framework/MessageBox.h"

namespace qv {
namespace {

bool HasWildcards(const CString& path) {
    return CFileUtils::GetFilenameFromPath(path).FindOneOf("*?") >= 0;
}

CString FreeName(const CString& taken) {
    const CString folder = CFileUtils::GetDirectoryFromPath(taken), name = CFileUtils::GetFilenameFromPath(taken);
    CString free = folder + "Copy of " + name;
    for (int i = 2; CFileUtils::IsExist(free); ++i) {
        CString numbered;
        numbered.Format("Copy (%d) of %s", i, name);
        free = folder + numbered;
    }
    return free;
}

}  // namespace

bool ShellTree::Copy(const CString& source, const CString& destination) {
    std::vector<Item> items;
    if (!Collect(source, items)) return false;
    const bool into = HasWildcards(source) || CFileUtils::IsDirectory(destination);
    const CString folder = into ? CFileUtils::TerminateDir(destination) : CFileUtils::GetDirectoryFromPath(destination);
    if (!folder.IsEmpty() && !PrepareFolder(folder)) return false;
    m_outermost = into ? folder : destination;
    for (const Item& item : items)
        if (!CopyItem(item, into ? folder + item.name : destination, !Has(CFileUtils::shellNoRecursion))) return false;
    return !m_declined;
}

bool ShellTree::Delete(const CString& path) {
    std::vector<Item> items;
    if (!Collect(path, items)) return false;
    for (const Item& item : items)
        if (!DeleteItem(item)) return false;
    return !m_declined;
}

/// Collects the items that the path names; finding none is a failure.
bool ShellTree::Collect(const CString& source, std::vector<Item>& items) {
    const CString path = CFileUtils::UnterminateDir(source);
    const bool filesOnly = Has(CFileUtils::shellFilesOnly) && HasWildcards(path);
    CFileFind find;
    for (BOOL more = find.FindFile(path); more;) {
        more = find.FindNextFile();
        const bool isFolder = find.IsDirectory();
        if (!find.IsDots() && !(isFolder && filesOnly))
            items.push_back({find.GetFilePath(), find.GetFileName(), isFolder});
    }
    if (find.GetError()) return Fail(path, static_cast<unsigned long>(find.GetError()));
    CFileStatus status;
    if (items.empty() && !HasWildcards(path) && !CFile::GetStatus(path, status))
        return Fail(path, platform::LastError());
    return true;
}

bool ShellTree::PrepareFolder(const CString& folder) {
    if (CFileUtils::IsDirectory(folder)) return true;
    const bool wanted = Has(CFileUtils::shellNoConfirmMakeFolder) ||
                        Confirm("The folder %s does not exist. Would you like to create it?", folder);
    if (!wanted) return false;
    return QvCreateDirectory(folder) || Fail(folder, platform::LastError());
}

bool ShellTree::CopyItem(const Item& item, CString target, bool recursive) {
    if (!Show(item.path)) return false;
    const bool taken = CFileUtils::IsExist(target);
    if (taken && Has(CFileUtils::shellRenameOnCollision))
        target = FreeName(target);
    else if (taken && !item.isFolder && !Confirm("%s exists already. Would you like to replace it?", target))
        return true;
    return item.isFolder ? CopyFolder(item.path, target, recursive) : CopyOneFile(item.path, target);
}

bool ShellTree::CopyFolder(const CString& source, const CString& target, bool recursive) {
    if (platform::IsFolderLink(source)) return true;
    if (!QvCreateDirectory(target)) return Fail(target, platform::LastError());
    CFileFind find;
    for (BOOL more = find.FindFile(source + "\\*.*", CFileFind::refuseLinkedFolder); more;) {
        more = find.FindNextFile();
        const Item item{source + '\\' + find.GetFileName(), find.GetFileName(), find.IsDirectory() != 0};
        const bool skipped =
            item.isFolder && (find.IsDots() || !recursive || platform::IsSame(item.path, m_outermost) ||
                              platform::IsSame(item.path, target));
        if (!skipped && !CopyItem(item, target + '\\' + item.name, recursive)) return false;
    }
    return !find.GetError() || Fail(source, static_cast<unsigned long>(find.GetError()));
}

bool ShellTree::CopyOneFile(const CString& source, const CString& target) {
    // A link is replaced; what it points to keeps its attributes.
    const CString path = CFileUtils::GetDirectoryFromPath(target);
    platform::Folder folder;
    if (folder.Open(path.IsEmpty() ? CString(".\\") : path, platform::LastName::MayBeLink).ok())
        folder.MakeWritable(platform::NativePath(CFileUtils::GetFilenameFromPath(target))).IgnoreError();
    const platform::Status status = platform::CopyWholeFile(source, target);
    return status.ok() || Fail(source, status.error());
}

bool ShellTree::DeleteItem(const Item& item) {
    if (!Show(item.path)) return false;
    if (!Confirm("Are you sure that you want to delete %s?", item.path)) return true;
    try {
        if (!item.isFolder) {
            CFile::Remove(item.path);
            return true;
        }
        CFileUtils::DelTree(item.path, 1);
        if (!CFileUtils::IsExist(item.path)) return true;
        const platform::Status status = platform::RemoveFolder(item.path);
        return status.ok() || Fail(item.path, status.error());
    } catch (CFileException* error) {
        const auto number = static_cast<unsigned long>(error->m_lOsError);
        error->Delete();
        return Fail(item.path, number);
    }
}

bool ShellTree::Confirm(const char* question, const CString& path) {
    constexpr UINT kYesNo = 4, kQuestion = 32;
    constexpr int kYes = 6;
    if (Has(CFileUtils::shellNoConfirmation)) return true;
    CString text;
    text.Format(RuntimeFormat{question}, path);
    const bool yes = AfxMessageBox(text, kYesNo | kQuestion) == kYes;
    m_declined = m_declined || !yes;
    return yes;
}

/// Returns false if the user cancels the operation.
bool ShellTree::Show(const CString& path) {
    return !m_progress || Has(CFileUtils::shellSilent) || m_progress->OnEntry(m_title, path);
}

bool ShellTree::Fail(const CString& path, unsigned long error) {
    constexpr UINT kStop = 16;
    const CString reason(platform::ErrorMessage(error));
    if (!Has(CFileUtils::shellNoErrorBox)) AfxMessageBox(path + ": " + reason, kStop);
    return false;
}

}  // namespace qv
