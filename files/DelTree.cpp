#include "files/FolderWalk.h"
#include "framework/FileErrors.h"
#include "platform/Path.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"

namespace {

using qv::ThrowIfFailed;
using qv::platform::EntryKind;
using qv::platform::FileCause;
using qv::platform::FolderEntry;
using qv::platform::Status;

bool IsGone(const Status& status) {
    return status.cause() == FileCause::FileNotFound;
}

/// Deletes what it walks through, each folder after all that it holds.
class TreeRemoval : public qv::FolderWalk {
public:
    explicit TreeRemoval(bool removesItself) : m_removesItself(removesItself) {}

protected:
    void OnFolder(const Place& place, const std::vector<FolderEntry>& entries) override {
        for (const FolderEntry& entry : entries)
            if (entry.kind != EntryKind::Folder)
                if (const Status removed = Remove(place, entry); !removed.ok())
                    ThrowIfFailed(removed, PathOf(place, entry));
    }

    // What keeps a folder from being deleted is found when that is tried.
    void OnEnd(const Place& first) override {
        if (m_removesItself) first.folder.MakeWritable().IgnoreError();
    }

    // A folder that is not empty or may not be deleted stays, without a failure.
    void OnLeave(const Place& parent, const FolderEntry& entry) override { Remove(parent, entry).IgnoreError(); }

    void OnFailure(const Status& failure, const Place& place, const Place* parent) override {
        if (IsGone(failure)) return;
        // What was a folder a moment ago may be a link now: that is deleted like any other.
        const bool replaced = parent && failure.cause() == FileCause::BadPath;
        ThrowIfFailed(replaced ? Remove(*parent, {place.entry.name, EntryKind::FolderLink}) : failure,
                      CFileUtils::UnterminateDir(PathOf(place)));
    }

private:
    static Status Remove(const Place& place, const FolderEntry& entry) {
        Status status = place.folder.Remove(entry);
        if (status.cause() == FileCause::AccessDenied && place.folder.AllowRemoval().ok())
            status = place.folder.Remove(entry);
        return IsGone(status) ? Status() : status;
    }

    const bool m_removesItself;
};

void RemoveItself(const CString& directory) {
    if (CString(qv::platform::CurrentFolder()).CompareNoCase(directory) == 0)
        qv::platform::ChangeFolder(qv::platform::SystemFolder());
    // A folder that is not empty or may not be deleted stays, without a failure.
    qv::platform::RemoveFolder(directory).IgnoreError();
}

}  // namespace

void CFileUtils::DelTree(const char* directory, int removeItself) {
    const CString folder = directory;
    if (!IsExist(folder)) return;
    if (!removeItself || !qv::platform::IsFolderLink(folder)) TreeRemoval(removeItself != 0).Walk(folder);
    if (removeItself) RemoveItself(folder);
}
