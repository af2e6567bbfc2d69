#include "files/FolderWalk.h"
#include "framework/FileFaults.h"
#include "platform/Path.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"

namespace {

using qv::CallSystem;
using qv::FileCall;
using qv::platform::EntryKind;
using qv::platform::FileCause;
using qv::platform::FileFailure;
using qv::platform::FolderEntry;

bool IsGone(const FileFailure& failure) {
    return failure.cause == FileCause::FileNotFound;
}

void ThrowIf(const FileFailure& failure, const CString& path) {
    if (failure) AfxThrowFileException(static_cast<int>(failure.cause), static_cast<LONG>(failure.error), path);
}

/// Deletes what it walks through, each folder after all that it holds.
class TreeRemoval : public qv::FolderWalk {
protected:
    void OnFolder(const Place& place, const std::vector<FolderEntry>& entries) override {
        for (const FolderEntry& entry : entries)
            if (entry.kind != EntryKind::Folder) ThrowIf(Remove(place, entry), place.PathOf(entry));
    }

    void OnLeave(const Place& parent, const FolderEntry& entry) override { Remove(parent, entry); }

    void OnFailure(const FileFailure& failure, const Place& place, const Place* parent) override {
        if (IsGone(failure)) return;
        // What was a folder a moment ago may be a link now: that is deleted like any other.
        const bool replaced = parent && failure.cause == FileCause::BadPath;
        ThrowIf(replaced ? Remove(*parent, {place.entry.name, EntryKind::FolderLink}) : failure,
                CFileUtils::UnterminateDir(place.path));
    }

private:
    static FileFailure Remove(const Place& place, const FolderEntry& entry) {
        const auto remove = [&] { return place.folder.Remove(entry); };
        FileFailure failure = CallSystem(FileCall::Remove, place.PathOf(entry), remove);
        if (failure.cause == FileCause::AccessDenied && !place.folder.AllowRemoval()) failure = remove();
        return IsGone(failure) ? FileFailure{} : failure;
    }
};

void RemoveItself(const CString& directory) {
    if (CString(qv::platform::CurrentFolder()).CompareNoCase(directory) == 0)
        qv::platform::ChangeFolder(qv::platform::SystemFolder());
    CallSystem(FileCall::Remove, directory, [&] { return qv::platform::RemoveFolder(directory); });
}

}  // namespace

void CFileUtils::DelTree(const char* directory, int removeItself) {
    const CString folder = directory;
    if (!IsExist(folder)) return;
    if (!removeItself || !qv::platform::IsFolderLink(folder)) {
        TreeRemoval().Walk(folder);
        MakeWritable(folder);
    }
    if (removeItself) RemoveItself(folder);
}
