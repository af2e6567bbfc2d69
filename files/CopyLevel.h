#pragma once

/// @file The folders of a tree that CCopyTree copies.

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/FileCopy.h"
#include "qvcommon/CopyTree.h"
#include "threads/Executor.h"

/// One folder of the source and its copy. Both are held open, so renaming or replacing their paths cannot redirect the
/// copy.
class CCopyTree::Level {
public:
    Level(CCopyTree& copy, CString source, CString target);
    ~Level();
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;

    bool Open();
    void CopyEntries();
    void Close();

    /// Whether these are the paths of the entry to be copied next.
    bool IsAt(const CString& source, const CString& target) const { return source == From() && target == To(); }
    qv::platform::Status CopyEntry();

private:
    /// The paths of the innermost level, with final separators. Those of the levels above are prefixes of them, so
    /// memory is linear in depth.
    struct Paths {
        std::string source, target;
    };
    /// An entry read from the source, and its copy if that is being written ahead.
    struct Upcoming {
        qv::platform::FoundEntry entry;
        std::vector<qv::platform::PassedOver> passedOver;  // before it
        qv::Task<qv::platform::FileCopy> copy;
    };
    /// Copies are written ahead by the threads of the outermost level.
    struct Ahead {
        qv::Executor executor;
        int files = 0;
        bool isWanted = true;  // until a written copy is not used
    };

    CString From() const {
        return CString(std::string_view(m_paths->source).substr(0, m_sourceLength)) + std::string_view(m_entry.name);
    }
    CString To() const {
        return CString(std::string_view(m_paths->target).substr(0, m_targetLength)) + std::string_view(m_entry.name);
    }
    qv::platform::Status OpenTarget();
    qv::platform::Status FindTarget();
    qv::platform::Status OpenSource();
    void Fetch(qv::platform::FileSearch& search);
    bool MayCopyAhead(const qv::platform::FoundEntry& entry) const;
    void CopyNext();
    void CopyFile();
    bool IsUpToDate();
    bool IsLinkUpToDate() const;
    qv::platform::Status CheckEntry() const;
    void Tell(const QvLeftOut& leftOut) const;
    void TellPassedOver(const std::vector<qv::platform::PassedOver>& passedOver) const;
    void Report(const qv::platform::Status& status);
    /// The same for one of the level's own folders, which is also reported to the observer.
    void Report(const qv::platform::Status& status, const std::string& folder);

    CCopyTree& m_copy;
    Level* const m_above;
    const Level* const m_outermost;
    const int m_depth;
    Level* const m_parent;  // the level above if both folders are directly in its own, else null
    std::unique_ptr<Paths> m_ownPaths;
    Paths* m_paths;
    std::size_t m_sourceLength, m_targetLength;
    bool m_isFresh = false;         // the target was just created and is known to be empty
    qv::platform::Status m_opened;  // of the target; a success, with m_to closed, where a dry run leaves it missing
    qv::platform::Folder m_from, m_to;
    const std::unique_ptr<Ahead> m_ownAhead;
    Ahead& m_ahead;
    std::deque<Upcoming> m_upcoming;  // no copies are among them while a subfolder is copied
    qv::platform::FoundEntry m_entry;
    std::optional<qv::platform::FileCopy> m_entryCopy;
};
