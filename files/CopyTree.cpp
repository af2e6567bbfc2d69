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

constexpr DWORD kDevice = 0x40;

}  // namespace

/// A file that is to be copied.
struct CCopyTree::Entry {
    CString path;
    QvFileTime written;
    bool isLink, isDevice;

    QvLeftOut LeftOut(DWORD error) const {
        return isDevice ? QvLeftOut::OfCause(path, QvLeftOut::device) : QvLeftOut::OfError(path, error, isLink);
    }
};

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

void CCopyTree::SetLeftOut(ILeftOut* observer) {
    m_leftOut = observer;
}

void CCopyTree::Tell(const QvLeftOut& leftOut) const {
    if (m_leftOut) m_leftOut->OnLeftOut(leftOut);
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
    if (!QvCreateDirectory(destination)) {
        const auto error = static_cast<DWORD>(qv::platform::LastError());
        Tell(QvLeftOut::OfError(CFileUtils::UnterminateDir(destination), error));
        qv::platform::SetLastError(error);
        OnError();
    }
    const bool nested = !m_outermost.IsEmpty();
    const Scoped outermost(m_outermost, nested ? m_outermost : destination);
    CFileFind find;
    find.SetLeftOut(m_leftOut);
    for (BOOL more = find.FindFile(source + "*.*", nested ? CFileFind::refuseLinkedFolder : 0); more;) {
        more = find.FindNextFile();
        const CString from = source + find.GetFileName(), to = destination + find.GetFileName();
        const bool isLink = find.IsLink() != 0;
        if (!find.IsDirectory())
            CopyOneFile({from, find.GetLastWriteTime(), isLink, find.MatchesMask(kDevice) != 0}, to, !fresh);
        else if (isLink)
            Tell(QvLeftOut::OfCause(from, QvLeftOut::linkedFolder));
        else if (!find.IsDots() && !qv::platform::IsSame(from, m_outermost))
            CopyTree(from, to);
    }
    if (!find.GetError()) return;
    qv::platform::SetLastError(static_cast<unsigned long>(find.GetError()));
    OnError();
}

/// In a folder that was made a moment ago nothing may exist, and nothing is asked for.
void CCopyTree::CopyOneFile(const Entry& entry, const CString& target, bool mayExist) {
    CFileStatus status;
    if (mayExist && CFile::GetStatus(target, status)) {
        MakeWritable(target, status);
        const auto seconds = entry.written.UnixSeconds();
        if (m_laterOnly && entry.written.Steps() != 0 && seconds && status.m_mtime >= *seconds) return;
    }
    if (m_progress) m_progress->OnCopyFile(entry.path);
    if (CopyFileA(entry.path, target)) return;
    const unsigned long error = qv::platform::LastError();
    Tell(entry.LeftOut(static_cast<DWORD>(error)));
    qv::platform::SetLastError(error);
    OnError();
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
