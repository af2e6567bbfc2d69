#include "qvcommon/CopyTree.h"

#include <utility>

#include "files/FolderWalk.h"
#include "platform/Error.h"
#include "platform/FileCopy.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"
#include "qvcommon/framework/FileFind.h"

ICopyProgress::~ICopyProgress() = default;
void ICopyProgress::OnStartCopy() {}
void ICopyProgress::OnCopyFile(const char*) {}
void ICopyProgress::OnFinishCopy() {}
int ICopyProgress::OnError(DWORD, const char*) {
    return 1;
}

namespace {

/// Counts all that is no folder.
class FileCount : public qv::FolderWalk {
public:
    int files = 0;

protected:
    void OnFolder(const Place&, const std::vector<qv::platform::FolderEntry>& entries) override {
        for (const auto& entry : entries) files += entry.kind == qv::platform::EntryKind::File;
    }
    void OnFailure(const qv::platform::Status&, const Place&, const Place*) override {}
};

/// Keeps a value for the time of a scope.
class Scoped {
public:
    Scoped(CString& variable, const CString& value) : m_variable(variable), m_before(variable) { variable = value; }
    ~Scoped() { m_variable = m_before; }
    Scoped(const Scoped&) = delete;
    Scoped& operator=(const Scoped&) = delete;

private:
    CString& m_variable;
    CString m_before;
};

void MakeWritable(const CString& path, CFileStatus status) {
    if (!(status.m_attribute & CFile::readOnly)) return;
    status.m_attribute = static_cast<BYTE>(status.m_attribute & ~CFile::readOnly);
    try {
        CFile::SetStatus(path, status);
    } catch (CFileException* error) {
        error->Delete();
    }
}

}  // namespace

void CCopyTree::SetProgressMonitor(ICopyProgress* progress) {
    m_progress = progress;
}

void CCopyTree::SetDestinationDirectory(const char* folder) {
    m_destination = CFileUtils::TerminateDir(folder);
}

void CCopyTree::SetSourceDirectory(const char* folder) {
    m_source = CFileUtils::TerminateDir(folder);
}

void CCopyTree::SetLaterOnly(int laterOnly) {
    m_laterOnly = laterOnly;
}

int CCopyTree::GetFileCount() {
    return GetFileCount(m_source);
}

int CCopyTree::GetFileCount(CString folder) {  // NOLINT(performance-unnecessary-value-param): as it is called
    FileCount count;
    count.Walk(folder);
    return count.files;
}

void CCopyTree::CopyTree() {
    if (m_progress) m_progress->OnStartCopy();
    CopyTree(m_source, m_destination);
    if (m_progress) m_progress->OnFinishCopy();
}

void CCopyTree::CopyTree(CString source, CString destination) {
    source = CFileUtils::TerminateDir(source);
    destination = CFileUtils::TerminateDir(destination);
    const bool fresh = !CFileUtils::IsDirectory(destination);
    if (!QvCreateDirectory(destination)) OnError();
    const bool nested = !m_outermost.IsEmpty();
    const Scoped outermost(m_outermost, nested ? m_outermost : destination);
    CFileFind find;
    for (BOOL more = find.FindFile(source + "*.*", nested ? CFileFind::refuseLinkedFolder : 0); more;) {
        more = find.FindNextFile();
        const CString from = source + find.GetFileName(), to = destination + find.GetFileName();
        const QvFileTime written = find.GetLastWriteTime();
        if (!find.IsDirectory())
            CopyOneFile(from, to, fresh ? nullptr : &written);
        else if (!find.IsDots() && !find.IsLink() && !qv::platform::IsSame(from, m_outermost))
            CopyTree(from, to);
    }
    if (!find.GetError()) return;
    qv::platform::SetLastError(static_cast<unsigned long>(find.GetError()));
    OnError();
}

/// In a folder that was made a moment ago there is nothing to be asked for: `written` is null then.
void CCopyTree::CopyOneFile(const CString& source, const CString& target, const QvFileTime* written) {
    CFileStatus status;
    if (written && CFile::GetStatus(target, status)) {
        MakeWritable(target, status);
        const auto seconds = written->UnixSeconds();
        if (m_laterOnly && written->Steps() != 0 && seconds && status.m_mtime >= *seconds) return;
    }
    if (m_progress) m_progress->OnCopyFile(source);
    if (!CopyFileA(source, target)) OnError();
}

int CCopyTree::CopyFileA(const char* source, const char* target) {
    const qv::platform::Status status = qv::platform::CopyWholeFile(source, target);
    if (!status.ok()) qv::platform::SetLastError(status.error());
    return status.ok();
}

void CCopyTree::OnError() {
    if (!m_progress) return;
    const unsigned long error = qv::platform::LastError();
    if (!m_progress->OnError(static_cast<DWORD>(error), qv::platform::ErrorMessage(error).c_str()))
        AfxThrowUserException();
}
