#pragma once

/// @file The folders of a tree that CCopyTree copies.

#include <memory>
#include <string>

#include "platform/Folder.h"
#include "qvcommon/CopyTree.h"

/// One folder of the source and its copy, both held open, so that nothing done to their paths leads the copy elsewhere.
class CCopyTree::Level {
public:
    Level(CCopyTree& copy, CString source, CString target);
    ~Level();
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;

    bool Open();
    void CopyEntries();
    void Close();

    /// Whether the entry that is to be copied next has these paths.
    bool IsAt(const CString& source, const CString& target) const { return source == From() && target == To(); }
    qv::platform::Status CopyEntry() const;

private:
    /// The paths of the innermost level, with final separators: those of the levels above are their beginnings, so that
    /// memory is linear in depth.
    struct Paths {
        std::string source, target;
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
    void CopyFile();
    bool IsUpToDate();
    qv::platform::Status CheckEntry() const;
    void Tell(const QvLeftOut& leftOut) const;
    void TellPassedOver(qv::platform::FileSearch& search) const;
    void Report(const qv::platform::Status& status);
    /// The same for one of the level's own folders, which is reported to the observer as well.
    void Report(const qv::platform::Status& status, const std::string& folder);

    CCopyTree& m_copy;
    Level* const m_above;
    const Level* const m_outermost;
    const int m_depth;
    Level* const m_parent;  // the level above if both folders lie in its own, else null
    std::unique_ptr<Paths> m_ownPaths;
    Paths* m_paths;
    std::size_t m_sourceLength, m_targetLength;
    bool m_isFresh = false;         // the target was made a moment ago, so that there is nothing in it to be asked for
    qv::platform::Status m_opened;  // of the target; a success, with m_to closed, where a dry run leaves it missing
    qv::platform::Folder m_from, m_to;
    qv::platform::FoundEntry m_entry;
};
