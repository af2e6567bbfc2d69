#pragma once

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/Event.h"
#include "platform/Path.h"
#include "qvcommon/ChangeWatchers.h"
#include "tests/support/TempFolder.h"

inline constexpr int kPatience = 20'000, kAWhile = 60;  // milliseconds

class Watcher : public CDirChangeWatcher {
public:
    Watcher(const CString& folder, DWORD filter, int subfolders = 1) {
        SetDirectory(folder);
        SetFilter(filter);
        SetCheckSubdirectories(subfolders);
        EXPECT_TRUE(Start());
    }
    ~Watcher() override { Stop(); }

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

/// Its OnChange returns when it may go on.
class HeldWatcher : public Watcher {
public:
    using Watcher::Watcher;
    ~HeldWatcher() override {
        m_isFree = true;
        GoOn();
        Stop();
    }

    void OnChange() override {
        Watcher::OnChange();
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
