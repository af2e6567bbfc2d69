#include "files/FolderWalk.h"
#include "framework/FileErrors.h"
#include "platform/Path.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"

namespace {

using qv::platform::EntryKind;
using qv::platform::FileCause;
using qv::platform::FolderEntry;
using qv::platform::Status;

bool IsGone(const Status& status) {
    return status.cause() == FileCause::FileNotFound;
}

/// Deletes what it visits, each folder after its content.
class TreeRemoval : public qv::FolderWalk {
public:
    enum class AtFailure { Stop, GoOn };

    TreeRemoval(bool removesItself, AtFailure atFailure)
        : FolderWalk(atFailure == AtFailure::Stop ? 0 : qv::Executor::SpareProcessors()),
          m_removesItself(removesItself),
          m_atFailure(atFailure) {}

    /// Whether the first folder could be opened.
    bool HasWalked() const { return m_hasWalked; }

protected:
    /// Called for what could not be deleted. The walk continues unless this raises an exception.
    virtual void OnStay(const Status& failure, const CString& path) = 0;
    virtual void OnFolderStays(const Status& failure, const CString& path) = 0;

    void Treat(Visit& visit) const override {
        if (!visit.listed.ok() && m_atFailure == AtFailure::Stop) return;  // the failure ends the walk
        for (const FolderEntry& entry : visit.entries) {
            if (entry.kind == EntryKind::Folder) continue;
            const Status status = Remove(visit.folder, entry);
            if (status.ok()) continue;
            visit.failures.push_back({status, entry});
            if (m_atFailure == AtFailure::Stop) return;
        }
    }

    void OnFolder(const Place& place, const Visit& visit) override {
        for (const auto& [status, entry] : visit.failures) OnStay(status, PathOf(place, entry));
    }

    // Deleting the folder reports what prevents it.
    void OnEnd(const Place& first) override {
        m_hasWalked = true;
        if (m_removesItself) first.folder.MakeWritable().IgnoreError();
    }

    void OnLeave(const Place& parent, const FolderEntry& entry) override {
        if (const Status status = Remove(parent.folder, entry); !status.ok())
            OnFolderStays(status, PathOf(parent, entry));
    }

    void OnFailure(const Status& failure, const Place& place, const Place* parent) override {
        if (IsGone(failure)) return;
        // The folder may have been replaced by a link meanwhile, which is deleted like any other.
        const bool replaced = parent && failure.cause() == FileCause::BadPath;
        const Status status = replaced ? Remove(parent->folder, {place.entry.name, EntryKind::FolderLink}) : failure;
        if (!status.ok()) OnStay(status, CFileUtils::UnterminateDir(PathOf(place)));
    }

private:
    static Status Remove(const qv::platform::Folder& folder, const FolderEntry& entry) {
        Status status = folder.Remove(entry);
        if (status.cause() == FileCause::AccessDenied && folder.AllowRemoval().ok()) status = folder.Remove(entry);
        return IsGone(status) ? Status() : status;
    }

    const bool m_removesItself;
    const AtFailure m_atFailure;
    bool m_hasWalked = false;
};

/// Raises the first failure, after which nothing more is deleted.
class RaisingRemoval : public TreeRemoval {
public:
    explicit RaisingRemoval(bool removesItself) : TreeRemoval(removesItself, AtFailure::Stop) {}

private:
    void OnStay(const Status& failure, const CString& path) override { qv::ThrowIfFailed(failure, path); }
    // A folder that is not empty or may not be deleted stays without a failure.
    void OnFolderStays(const Status&, const CString&) override {}
};

class ReportingRemoval : public TreeRemoval {
public:
    ReportingRemoval(bool removesItself, ILeftOut& leftOut)
        : TreeRemoval(removesItself, AtFailure::GoOn), m_leftOut(leftOut) {}

    void OnStay(const Status& failure, const CString& path) override {
        m_last = path;
        m_leftOut.OnLeftOut(QvLeftOut::OfError(path, static_cast<DWORD>(failure.error())));
    }
    /// A folder that stays because of its content is not reported: that content was, or the failure to read it.
    void OnFolderStays(const Status& failure, const CString& path) override {
        const bool isReported = m_last == path || m_last.AsStd().starts_with(CFileUtils::TerminateDir(path).AsStd());
        if (!isReported) OnStay(failure, path);
    }

private:
    ILeftOut& m_leftOut;
    CString m_last;  ///< the last reported path; a folder is reported after its content
};

Status RemoveItself(const CString& directory) {
    if (CString(qv::platform::CurrentFolder()).CompareNoCase(directory) == 0)
        qv::platform::ChangeFolder(qv::platform::SystemFolder());
    return qv::platform::RemoveFolder(directory);
}

Status Remove(const CString& folder, int removeItself, TreeRemoval& removal) {
    if (!CFileUtils::IsExist(folder)) return {};
    if (removeItself && qv::platform::IsFolderLink(folder)) return RemoveItself(folder);
    removal.Walk(folder);
    // A folder that could not be opened was reported, and stays even if it is empty, as a subfolder does.
    return removeItself && removal.HasWalked() ? RemoveItself(folder) : Status();
}

}  // namespace

void CFileUtils::DelTree(const char* directory, int removeItself) {
    if (!IsDirectory(directory)) return;
    // A folder that is not empty or may not be deleted stays without a failure.
    RaisingRemoval removal(removeItself != 0);
    Remove(directory, removeItself, removal).IgnoreError();
}

void CFileUtils::DelTree(const char* directory, int removeItself, ILeftOut& leftOut) {
    const CString folder = directory;
    if (!IsDirectory(folder)) return;
    ReportingRemoval removal(removeItself != 0, leftOut);
    const Status status = Remove(folder, removeItself, removal);
    if (!status.ok() && !IsGone(status)) removal.OnFolderStays(status, UnterminateDir(folder));
}
