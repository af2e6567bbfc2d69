#pragma once

#include <filesystem>

#include "platform/Event.h"
#include "qvcommon/ChangeWatchers.h"
#include "tests/support/FileTests.h"

inline constexpr int kPatience = 20'000, kAWhile = 60;  // milliseconds

/// Reports each call of OnChange. A held one returns from it only when it is released.
class Watcher : public CDirChangeWatcher {
public:
    Watcher(const CString& folder, DWORD filter, int subfolders = 1, bool isHeld = false) : m_isHeld(isHeld) {
        SetDirectory(folder);
        SetFilter(filter);
        SetCheckSubdirectories(subfolders);
        EXPECT_TRUE(Start());
    }
    ~Watcher() override {
        m_isHeld = false;
        GoOn();
        Stop();
    }

    void OnChange() override {
        CDirChangeWatcher::OnChange();
        m_changed.Set();
        if (m_isHeld) m_goOn.Wait();
    }

    void GoOn() { m_goOn.Set(); }
    bool SeesChange() { return m_changed.WaitFor(kPatience); }
    bool StaysQuiet() { return !m_changed.WaitFor(kAWhile); }
    void Settle() {
        while (!StaysQuiet()) {
        }
    }

private:
    std::atomic<bool> m_isHeld;
    qv::platform::Event m_changed, m_goOn;
};

inline bool OnWindows() {
    return qv::platform::HasDriveLetters();
}

/// The tree in which operations are done.
inline void MakeWatchedTree(const TempFolder& tree) {
    MakeTree(tree.Native(), {"file", "folder/", "sub/file", "sub/folder/"});
}
