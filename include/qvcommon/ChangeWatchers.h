#pragma once

/// @file Watching folders for changes, and files for deletion.

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

#include "qvcommon/TimerThread.h"
#include "qvcommon/framework/Collections.h"

/// Watches a folder for changes on its own thread. Reports that something changed, not what; changes that occur
/// together, or while OnChange runs, are reported once. Changes made after Start returns are never missed, and a
/// continuous stream of changes delays neither OnChange nor Stop.
///
/// Virtual operations, in slot order: the destructor, Start, OnChange, Stop, HasChanged, SetDirectory,
/// SetCheckSubdirectories, SetFilter, IsWatching. HasChanged and IsWatching are thread-safe; the others must not be
/// called concurrently, except that OnChange may restart the watcher while another thread stops it.
///
/// Subfolders created while watching are watched too. An overflow of the system's event queue counts as a change. Links
/// to folders below the watched one are not followed.
/// When the watched folder is removed, OnChange is called once more, the watch ends and IsWatching returns 0. On
/// Windows a folder that is deleted while watched disappears for others at once, but the watch may not notice until
/// Stop; on Linux it does not notice while a program has the folder open or as its current folder. A watched folder that
/// is renamed stays watched; on Linux, with subfolders, this ends the watch in the same
/// way, as does renaming a folder above it once a new subfolder must be found.
/// On Linux the watch also ends when the file system is unmounted, and when the system runs out of watches or
/// descriptors, so that no changes are missed silently; Windows refuses to remove the volume.
///
/// On Linux the filter bits report more than they name: changes of attributes, owner and times are reported for 0x04,
/// 0x10 and 0x100 alike, and each write as a change of the size. With subfolders every folder that is created, deleted
/// or moved counts regardless of the filter, since changes in it may have occurred before it was watched, or
/// disappeared with it.
class QVCOMMON_API CDirChangeWatcher {
public:
    CDirChangeWatcher();
    /// Stops. A derived class must call Stop in its own destructor, or OnChange may run on a partly destroyed object.
    virtual ~CDirChangeWatcher();
    CDirChangeWatcher(const CDirChangeWatcher&) = delete;
    CDirChangeWatcher& operator=(const CDirChangeWatcher&) = delete;

    /// Stops any running watch and watches the configured folder. Returns non-zero once the watch is armed; 0 if the
    /// folder cannot be watched or no thread could be started, and in OnChange also while another thread stops the
    /// watcher.
    virtual int Start();
    /// Called on the watcher's thread; must not throw. The base sets the flag that HasChanged reads. It may call every
    /// member, and destroy the object: Stop called from here does not wait for this call, and the watch ends when
    /// OnChange has returned.
    virtual void OnChange();
    /// Stops the watch; waits until OnChange has returned for the last time. No-op if nothing is watched.
    virtual void Stop();
    /// Returns non-zero after a change, until called with `reset` non-zero.
    virtual int HasChanged(int reset);

    /// Each: Takes effect with the next Start. The filter is a combination of the system's bits: 0x01 file names, 0x02
    /// folder names, 0x04 attributes, 0x08 size, 0x10 last write, 0x20 last access, 0x40 creation, 0x100 security.
    virtual void SetDirectory(const char* folder) { m_folder = folder; }
    virtual void SetCheckSubdirectories(int check) { m_checkSubfolders = check; }
    virtual void SetFilter(DWORD filter) { m_filter = filter; }
    /// Returns non-zero between a successful Start and Stop, or the removal of the watched folder.
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
    std::mutex m_guard;              // guards only the pointer
    std::shared_ptr<Watch> m_watch;  // shared with the thread
};

class CDeletedFileWatchManager;

/// Checks at intervals, the first time at once, whether a file exists. When it is gone, shows the message once with the
/// information icon, makes the manager forget the path, and suspends its thread for good.
class QVCOMMON_API CDeletedFileWatcher : public CTimerThread {
public:
    /// The manager must outlive the watcher.
    CDeletedFileWatcher(const char* path, const char* message, CDeletedFileWatchManager* manager)
        : m_message(message), m_path(path), m_manager(manager) {}
    /// Checks the file; called on the timer thread.
    void OnTick() override;

private:
    CString m_message, m_path;
    CDeletedFileWatchManager* m_manager;
};

/// Watches files, each with its own thread, at a common interval. A deletion gives one message; the path may be added
/// again afterwards.
///
/// AddFile and Close must not be called concurrently. The watchers call FileDeleted from their own threads at any time.
class QVCOMMON_API CDeletedFileWatchManager {
public:
    /// @param allowDuplicates  non-zero: each AddFile of the same path starts a watcher, and each gives its message.
    CDeletedFileWatchManager(DWORD seconds, int allowDuplicates);
    /// Calls Close.
    ~CDeletedFileWatchManager();
    CDeletedFileWatchManager(const CDeletedFileWatchManager&) = delete;
    CDeletedFileWatchManager& operator=(const CDeletedFileWatchManager&) = delete;

    /// Starts watching a file. No-op for a path that is already watched, unless duplicates are allowed. If no thread
    /// can be started, the file is not watched, and adding it again has no effect until Close.
    void AddFile(const char* path, const char* message);

    /// Stops all watchers, in the order in which they were added; waits while one of them shows its message. Files may
    /// be added again afterwards.
    void Close();

protected:
    friend class CDeletedFileWatcher;
    /// Called by the watcher of a deleted file, on its thread: the path may be added again.
    void FileDeleted(const char* path);

private:
    DWORD m_seconds;
    std::vector<std::unique_ptr<CDeletedFileWatcher>> m_watchers;
    int m_allowDuplicates;
    std::mutex m_guard;  // guards only the set
    CMapStringToPtr m_paths;
};
