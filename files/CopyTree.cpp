#include "qvcommon/CopyTree.h"

#include <utility>

#include "files/FolderWalk.h"
#include "platform/Error.h"
#include "platform/FileCopy.h"
#include "platform/Path.h"
#include "platform/Time.h"
#include "qvcommon/FileUtils.h"

ICopyProgress::~ICopyProgress() = default;
void ICopyProgress::OnStartCopy() {}
void ICopyProgress::OnCopyFile(const char*) {}
void ICopyProgress::OnFinishCopy() {}
int ICopyProgress::OnError(DWORD, const char*) {
    return 1;
}

namespace {

using qv::platform::FileSearch;
using qv::platform::Folder;
using qv::platform::FolderUse;
using qv::platform::FoundEntry;
using qv::platform::kReadOnly;
using qv::platform::kTicksPerSecond;
using qv::platform::LastName;
using qv::platform::NativePath;
using qv::platform::Status;

/// Levels below this one let go of the folders above them, so that the depth is not bounded by open files.
constexpr int kHeldOpen = 64;

/// Counts all that is no folder.
class FileCount : public qv::FolderWalk {
public:
    int files = 0;

protected:
    void OnFolder(const Place&, const std::vector<qv::platform::FolderEntry>& entries) override {
        for (const auto& entry : entries) files += entry.kind == qv::platform::EntryKind::File;
    }
    void OnFailure(const Status&, const Place&, const Place*) override {}
};

DWORD ErrorOf(const Status& failure) {
    return static_cast<DWORD>(failure.error());
}

}  // namespace

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
    Status CopyEntry() const;

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
    Status OpenTarget();
    Status OpenSource();
    void CopyFile();
    bool IsUpToDate();
    void Tell(const QvLeftOut& leftOut) const;
    void TellPassedOver(FileSearch& search) const;
    void Report(const Status& status);
    /// The same for one of the level's own folders, which is reported to the observer as well.
    void Report(const Status& status, const std::string& folder);

    CCopyTree& m_copy;
    Level* const m_above;
    const Level* const m_outermost;
    const int m_depth;
    bool m_isBelow;  // both folders lie in those of the level above
    std::unique_ptr<Paths> m_ownPaths;
    Paths* m_paths;
    std::size_t m_sourceLength, m_targetLength;
    bool m_isFresh = false;  // the target was made a moment ago, so that there is nothing in it to be asked for
    Status m_opened;         // of the target
    Folder m_from, m_to;
    FoundEntry m_entry;
};

CCopyTree::Level::Level(CCopyTree& copy, CString source, CString target)
    : m_copy(copy),
      m_above(copy.m_level),
      m_outermost(m_above ? m_above->m_outermost : this),
      m_depth(m_above ? m_above->m_depth + 1 : 0),
      m_isBelow(m_above && source == m_above->From() + '\\' && target == m_above->To() + '\\'),
      m_ownPaths(m_isBelow ? nullptr : std::make_unique<Paths>()),
      m_paths(m_isBelow ? m_above->m_paths : m_ownPaths.get()),
      m_sourceLength(source.AsStd().size()),
      m_targetLength(target.AsStd().size()) {
    m_paths->source.assign(source);
    m_paths->target.assign(target);
    m_copy.m_level = this;
}

CCopyTree::Level::~Level() {
    if (m_isBelow) {
        m_paths->source.resize(m_above->m_sourceLength);
        m_paths->target.resize(m_above->m_targetLength);
    }
    m_copy.m_level = m_above;
}

void CCopyTree::Level::Report(const Status& status) {
    if (status.ok()) return;
    qv::platform::SetLastError(status.error());
    m_copy.OnError();
}

void CCopyTree::Level::Report(const Status& status, const std::string& folder) {
    if (!status.ok()) Tell(QvLeftOut::OfError(CFileUtils::UnterminateDir(folder.c_str()), ErrorOf(status)));
    Report(status);
}

void CCopyTree::Level::Tell(const QvLeftOut& leftOut) const {
    if (m_copy.m_leftOut) m_copy.m_leftOut->OnLeftOut(leftOut);
}

void CCopyTree::Level::TellPassedOver(FileSearch& search) const {
    for (const qv::platform::PassedOver& passedOver : search.TakePassedOver()) {
        const std::string folder = m_paths->source.substr(0, m_sourceLength);
        const std::string path =
            passedOver.name.empty() ? CFileUtils::UnterminateDir(folder.c_str()).AsStd() : folder + passedOver.name;
        Tell(QvLeftOut::OfError(CString(path), ErrorOf(passedOver.status)));
    }
}

/// False for the destination itself, which is not copied into itself.
bool CCopyTree::Level::Open() {
    const Status source = OpenSource();
    if (m_above && source.ok() && m_from.IsSame(m_outermost->m_to)) return false;
    m_opened = OpenTarget();
    Report(m_opened, m_paths->target);
    if (m_isBelow && m_depth >= kHeldOpen) {
        if (source.ok()) m_above->m_from.LetGo();
        if (m_opened.ok()) m_above->m_to.LetGo();
    }
    Report(source, m_paths->source);
    return true;
}

Status CCopyTree::Level::OpenTarget() {
    if (m_isBelow)
        return m_above->m_opened.ok() ? m_to.MakeIn(m_above->m_to, NativePath(m_above->m_entry.name), m_isFresh)
                                      : m_above->m_opened;
    const CString target = m_paths->target;
    m_isFresh = !CFileUtils::IsDirectory(target);
    if (!QvCreateDirectory(target)) return Status::OfError(qv::platform::LastError());
    return m_to.Open(target, LastName::MayBeLink, FolderUse::LookedUpIn);
}

Status CCopyTree::Level::OpenSource() {
    if (m_isBelow) return m_from.OpenIn(m_above->m_from, NativePath(m_above->m_entry.name));
    return m_from.Open(m_paths->source.c_str(), m_above ? LastName::NoLink : LastName::MayBeLink);
}

/// Gives the level above its folders back.
void CCopyTree::Level::Close() {
    if (!m_isBelow || m_depth < kHeldOpen) return;
    if (m_from.GetBody()) Report(m_above->m_from.TakeBack(m_from), m_paths->source);
    if (!m_to.GetBody()) return;
    m_above->m_opened = m_above->m_to.TakeBack(m_to);
    Report(m_above->m_opened, m_paths->target);
}

void CCopyTree::Level::CopyEntries() {
    if (!m_from.GetBody()) return;
    FileSearch search;
    search.StartIn(m_from);
    while (search.Next(m_entry)) {
        TellPassedOver(search);
        if (!m_entry.IsFolder())
            CopyFile();
        else if (m_entry.IsLink())
            Tell(QvLeftOut::OfCause(From(), QvLeftOut::linkedFolder));
        else if (!m_entry.IsDots())
            m_copy.CopyTree(From(), To());
    }
    TellPassedOver(search);
    Report(search.LeftOut());
}

void CCopyTree::Level::CopyFile() {
    if (!m_isFresh && IsUpToDate()) return;
    const CString from = From();
    if (m_copy.m_progress) m_copy.m_progress->OnCopyFile(from);
    if (m_copy.CopyFileA(from, To())) return;
    const unsigned long error = qv::platform::LastError();
    const bool isDevice = m_entry.attributes & qv::platform::kDevice;
    Tell(isDevice ? QvLeftOut::OfCause(from, QvLeftOut::device)
                  : QvLeftOut::OfError(from, static_cast<DWORD>(error), m_entry.IsLink()));
    qv::platform::SetLastError(error);
    m_copy.OnError();
}

/// Whether the copy may be passed over. It is made writable in any case.
bool CCopyTree::Level::IsUpToDate() {
    FoundEntry target;
    target.name = m_entry.name;
    if (!m_opened.ok() || !m_to.Find(target).ok()) return false;
    // Where it stays read-only, the copy reports that it is refused.
    if (target.attributes & kReadOnly && !target.IsFolder()) m_to.MakeWritable(NativePath(target.name)).IgnoreError();
    const bool known = m_copy.m_laterOnly && m_entry.written != 0;
    return known && target.written / kTicksPerSecond >= m_entry.written / kTicksPerSecond;
}

Status CCopyTree::Level::CopyEntry() const {
    if (!m_opened.ok()) return m_opened;
    const LastName lastName = m_entry.IsLink() ? LastName::MayBeLink : LastName::NoLink;
    return qv::platform::CopyFileIn(m_from, m_entry.name, lastName, m_to, m_entry.name);
}

void CCopyTree::SetProgressMonitor(ICopyProgress* progress) {
    m_progress = progress;
}

void CCopyTree::SetDestinationDirectory(const char* folder) {
    m_destination = CFileUtils::TerminateDir(folder);
}

void CCopyTree::SetSourceDirectory(const char* folder) {
    m_source = CFileUtils::TerminateDir(folder);
}

void CCopyTree::SetLaterOnly(int laterOnly) {
    m_laterOnly = laterOnly;
}

void CCopyTree::SetLeftOut(ILeftOut* observer) {
    m_leftOut = observer;
}

int CCopyTree::GetFileCount() {
    return GetFileCount(m_source);
}

int CCopyTree::GetFileCount(CString folder) {  // NOLINT(performance-unnecessary-value-param): as it is called
    FileCount count;
    count.Walk(folder);
    return count.files;
}

void CCopyTree::CopyTree() {
    if (m_progress) m_progress->OnStartCopy();
    CopyTree(m_source, m_destination);
    if (m_progress) m_progress->OnFinishCopy();
}

void CCopyTree::CopyTree(CString source, CString destination) {
    source = CFileUtils::TerminateDir(source);
    destination = CFileUtils::TerminateDir(destination);
    Level level(*this, std::move(source), std::move(destination));  // keeps no copies of them
    if (!level.Open()) return;
    level.CopyEntries();
    level.Close();
}

int CCopyTree::CopyFileA(const char* source, const char* target) {
    const bool isNext = m_level && m_level->IsAt(source, target);
    const Status status = isNext ? m_level->CopyEntry() : qv::platform::CopyWholeFile(source, target);
    if (!status.ok()) qv::platform::SetLastError(status.error());
    return status.ok();
}

void CCopyTree::OnError() {
    if (!m_progress) return;
    const unsigned long error = qv::platform::LastError();
    if (!m_progress->OnError(static_cast<DWORD>(error), qv::platform::ErrorMessage(error).c_str()))
        AfxThrowUserException();
}
