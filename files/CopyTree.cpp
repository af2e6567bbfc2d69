#include "qvcommon/CopyTree.h"

#include <utility>

#include "files/CopyLevel.h"
#include "files/FolderWalk.h"
#include "platform/Error.h"
#include "platform/FileCopy.h"
#include "platform/FileOpen.h"
#include "qvcommon/FileUtils.h"

ICopyProgress::~ICopyProgress() = default;
void ICopyProgress::OnStartCopy() {}
void ICopyProgress::OnCopyFile(const char*) {}
void ICopyProgress::OnFinishCopy() {}
int ICopyProgress::OnError(DWORD, const char*) {
    return 1;
}
void ICopyProgress::OnCopyBytes(std::uint64_t) {}

namespace {

using qv::platform::Status;

/// Counts all entries that are not folders.
class FileCount : public qv::FolderWalk {
public:
    int files = 0;

protected:
    void OnFolder(const Place&, const Visit& visit) override {
        for (const auto& entry : visit.entries) files += entry.kind == qv::platform::EntryKind::File;
    }
    void OnFailure(const Status&, const Place&, const Place*) override {}
};

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

void CCopyTree::SetDryRun(int dryRun) {
    m_dryRun = dryRun;
}

void CCopyTree::SetLeftOut(ILeftOut* observer) {
    m_leftOut = observer;
}

int CCopyTree::GetFileCount() {
    return GetFileCount(m_source);
}

int CCopyTree::GetFileCount(CString folder) {  // NOLINT(performance-unnecessary-value-param): part of the interface
    FileCount count;
    count.Walk(folder, qv::platform::LastName::MayBeLink);
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
    Level level(*this, std::move(source), std::move(destination));  // keeps no references to them
    if (!level.Open()) return;
    level.CopyEntries();
    level.Close();
}

int CCopyTree::CopyFileA(const char* source, const char* target) {
    const bool isNext = m_level && m_level->IsAt(source, target);
    const Status status = isNext     ? m_level->CopyEntry()
                          : m_dryRun ? qv::platform::MayRead(source)
                                     : qv::platform::CopyWholeFile(source, target);
    if (!status.ok()) qv::platform::SetLastError(status.error());
    return status.ok();
}

void CCopyTree::OnError() {
    if (!m_progress) return;
    const unsigned long error = qv::platform::LastError();
    if (!m_progress->OnError(static_cast<DWORD>(error), qv::platform::ErrorMessage(error).c_str()))
        AfxThrowUserException();
}
