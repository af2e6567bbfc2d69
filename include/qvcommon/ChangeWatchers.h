#pragma once

/// @file Watching folders for changes, and files for their disappearance.

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

#include "qvcommon/TimerThread.h"
#include "qvcommon/framework/Collections.h"

/// Waits on a thread of its own for changes in a folder. It says that something changed, not what; changes that come
/// together, or while OnChange runs, are reported once. What has changed after Start returned is never missed, and changes that
/// never end delay neither OnChange nor Stop.
///
/// Virtual operations, in slot order: the destructor, Start, OnChange, Stop, HasChanged, SetDirectory,
/// SetCheckSubdirectories, SetFilter, IsWatching. HasChanged and IsWatching are for any thread, the others
/// for one at a time.
///
/// Subfolders that appear while watching are watched too. An overflow of the system's list of changes counts as a change.
/// Links to folders below the watched one are not followed.
/// The end of the watched folder: after one more OnChange the watch ends by itself and IsWatching gives 0. On Windows a
/// folder that is deleted while it is watched is gone for others at once, but the watch may learn of it only with Stop.
/// A watched folder that is renamed stays watched; on Linux, with subfolders, this ends the watch in the same way, and so
/// does a folder above it that was renamed, once a new subfolder has to be found.
/// An unmounted file system ends the watch on Linux, and so does the last of the system's watches or descriptors, rather
/// than that changes are missed; Windows refuses to take the volume away.
///
/// What the filter's bits find on Linux beyond what they say: changes of attributes, owner and times are reported for 0x04,
/// 0x10 and 0x100 alike, and each write as a change of the size. With subfolders every folder that is made, deleted or
/// moved counts whatever the filter, since changes in it may have come before it was watched, or gone with it.
class QVCOMMON_API CDirChangeWatcher {
public:
    CDirChangeWatcher();
    /// Stops. A derived class calls Stop in its own destructor, or its OnChange may run when it is half gone.
    virtual ~CDirChangeWatcher();
    CDirChangeWatcher(const CDirChangeWatcher&) = delete;
    CDirChangeWatcher& operator=(const CDirChangeWatcher&) = delete;

    /// Stops what runs and watches the folder as it is set now. Non-zero once the watch is armed; 0 when the folder cannot
    /// be watched or no thread could be started.
    virtual int Start();
    /// Runs on the watcher's thread; no exception may leave it. The base sets the flag that HasChanged reads. It may call
    /// every member, and end the object: a Stop from here returns at once, and the watch ends when OnChange has returned.
    /// (A watcher that its OnChange starts anew keeps a little memory of each watch before until somebody else stops it.)
    virtual void OnChange();
    /// Returns when OnChange has ended for the last time; at once when nothing is watched.
    virtual void Stop();
    /// Non-zero after a change, until it was called with `reset` non-zero.
    virtual int HasChanged(int reset);

    /// Each: These take effect with the next Start. The filter has the system's bits: 0x01 names of files, 0x02 names
    /// of folders, 0x04 attributes, 0x08 size, 0x10 time of the last write, 0x20 of the last access, 0x40 of creation,
    /// 0x100 security.
    virtual void SetDirectory(const char* folder) { m_folder = folder; }
    virtual void SetCheckSubdirectories(int check) { m_checkSubfolders = check; }
    virtual void SetFilter(DWORD filter) { m_filter = filter; }
    /// Non-zero between a successful Start and Stop, or the end of the watched folder.
    virtual int IsWatching();

private:
    struct Watch;

    void Run(Watch& watch);
    std::shared_ptr<Watch> Current();
    void Replace(std::shared_ptr<Watch> watch);

    CString m_folder;
    int m_checkSubfolders = 1;
    DWORD m_filter = 0x19;
    std::atomic<int> m_changed = 0;
    std::mutex m_guard;              // of the pointer alone
    std::shared_ptr<Watch> m_watch;  // the thread holds it too
};

class CDeletedFileWatchManager;

/// Looks after one file at intervals, the first time at once, and tells the user once when it is gone: it shows the message
/// with the information icon, makes the manager forget the path, and parks its thread for good.
class QVCOMMON_API CDeletedFileWatcher : public CTimerThread {
public:
    /// The manager has to outlive it.
    CDeletedFileWatcher(const char* path, const char* message, CDeletedFileWatchManager* manager)
        : m_message(message), m_path(path), m_manager(manager) {}
    /// One look at the file, on the timer thread.
    void OnTick() override;

private:
    CString m_message, m_path;
    CDeletedFileWatchManager* m_manager;
};

/// Watches files, each with a thread of its own, at a common interval. A deletion gives one message; the path may be added
/// anew then.
///
/// AddFile and Close are for one thread at a time. The watchers themselves come from threads of their own and may do so at
/// any moment.
class QVCOMMON_API CDeletedFileWatchManager {
public:
    /// @param allowDuplicates  non-zero: each AddFile of the same path starts a watcher, and each gives its message.
    CDeletedFileWatchManager(DWORD seconds, int allowDuplicates);
    /// Closes.
    ~CDeletedFileWatchManager();
    CDeletedFileWatchManager(const CDeletedFileWatchManager&) = delete;
    CDeletedFileWatchManager& operator=(const CDeletedFileWatchManager&) = delete;

    /// Does nothing for a path that is being watched, unless duplicates are allowed.
    void AddFile(const char* path, const char* message);

    /// Ends all watchers, in the order in which they came; waits while one of them shows its message. Afterwards files may
    /// be added anew.
    void Close();

protected:
    friend class CDeletedFileWatcher;
    /// Called by the watcher of a file that is gone, on its thread: the path may be added again.
    void FileDeleted(const char* path);

private:
    DWORD m_seconds;
    std::vector<std::unique_ptr<CDeletedFileWatcher>> m_watchers;
    int m_allowDuplicates;
    std::mutex m_guard;  // of the set alone
    CMapStringToPtr m_paths;
};
