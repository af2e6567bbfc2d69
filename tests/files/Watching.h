#pragma once

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/Event.h"
#include "platform/Path.h"
#include "qvcommon/ChangeWatchers.h"
#include "tests/support/TempFolder.h"

inline constexpr int kPatience = 20'000, kAWhile = 60;  // milliseconds

/// Says when OnChange has been called. A class below starts the watch itself, when it is complete.
class UnstartedWatcher : public CDirChangeWatcher {
public:
    UnstartedWatcher(const CString& folder, DWORD filter, int subfolders) {
        SetDirectory(folder);
        SetFilter(filter);
        SetCheckSubdirectories(subfolders);
    }

    void OnChange() override {
        CDirChangeWatcher::OnChange();
        m_changed.Set();
    }

    bool SeesChange() { return m_changed.WaitFor(kPatience); }
    // Until nothing has come for a while.
    void Settle() {
        while (m_changed.WaitFor(kAWhile)) {
        }
    }
    bool StaysQuiet() { return !m_changed.WaitFor(kAWhile); }

private:
    qv::platform::Event m_changed;
};

class Watcher : public UnstartedWatcher {
public:
    Watcher(const CString& folder, DWORD filter, int subfolders = 1) : UnstartedWatcher(folder, filter, subfolders) {
        EXPECT_TRUE(Start());
    }
    ~Watcher() override { Stop(); }
};

/// Its OnChange returns when it may go on.
class HeldWatcher : public UnstartedWatcher {
public:
    HeldWatcher(const CString& folder, DWORD filter, int subfolders = 1)
        : UnstartedWatcher(folder, filter, subfolders) {
        EXPECT_TRUE(Start());
    }
    ~HeldWatcher() override {
        m_isFree = true;
        GoOn();
        Stop();
    }

    void OnChange() override {
        UnstartedWatcher::OnChange();
        if (!m_isFree) m_goOn.Wait();
    }
    void GoOn() { m_goOn.Set(); }

private:
    std::atomic<bool> m_isFree = false;
    qv::platform::Event m_goOn;
};

inline bool OnWindows() {
    return qv::platform::HasDriveLetters();
}

// The tree in which operations are done: "file" and "folder", "sub" with the same in it.
inline void MakeWatchedTree(const TempFolder& tree) {
    for (const char* const folder : {"", "sub/"}) {
        std::filesystem::create_directories(tree.Native(folder + std::string("folder")));
        tree.Write(folder + std::string("file"), "text");
    }
}
