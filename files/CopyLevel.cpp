#include "files/CopyLevel.h"

#include "files/PathParts.h"
#include "platform/Error.h"
#include "platform/FileOpen.h"
#include "platform/FileStatus.h"
#include "platform/Path.h"
#include "platform/Time.h"
#include "qvcommon/FileUtils.h"

namespace {

using qv::platform::FileCopy;
using qv::platform::FileSearch;
using qv::platform::FolderUse;
using qv::platform::FoundEntry;
using qv::platform::kReadOnly;
using qv::platform::kTicksPerSecond;
using qv::platform::LastName;
using qv::platform::NativePath;
using qv::platform::PassedOver;
using qv::platform::Status;

/// Levels below this one close the folders above them, so that open files do not bound the depth.
constexpr int kHeldOpen = 64;

/// The number of files copied before threads help.
constexpr int kFewFiles = 8;
constexpr std::size_t kMostUpcoming = 16;
/// Larger files are copied in order, so that their progress is visible and unnamed copies take little disk space.
constexpr std::uint64_t kLargestAhead = 1 << 20;

DWORD ErrorOf(const Status& failure) {
    return static_cast<DWORD>(failure.error());
}

LastName SourceOf(const FoundEntry& entry) {
    return entry.IsLink() ? LastName::MayBeLink : LastName::NoLink;
}

/// Returns why the path cannot be opened as a file: it is a folder or a device.
Status WhyNoFile(const CString& path) {
    qv::platform::FileHandle file = qv::platform::kNoFile;
    const Status opened = qv::platform::OpenFile(path, {.read = true}, file);
    if (opened.ok()) qv::platform::CloseFile(file).IgnoreError();  // it has just become a file
    return opened;
}

}  // namespace

CCopyTree::Level::Level(CCopyTree& copy, CString source, CString target)
    : m_copy(copy),
      m_above(copy.m_level),
      m_outermost(m_above ? m_above->m_outermost : this),
      m_depth(m_above ? m_above->m_depth + 1 : 0),
      m_parent(m_above && source == m_above->From() + '\\' && target == m_above->To() + '\\' ? m_above : nullptr),
      m_ownPaths(m_parent ? nullptr : std::make_unique<Paths>()),
      m_paths(m_parent ? m_parent->m_paths : m_ownPaths.get()),
      m_sourceLength(source.AsStd().size()),
      m_targetLength(target.AsStd().size()),
      m_ownAhead(m_above ? nullptr : std::make_unique<Ahead>()),
      m_ahead(m_above ? m_above->m_ahead : *m_ownAhead) {
    m_paths->source.assign(source);
    m_paths->target.assign(target);
    m_copy.m_level = this;
}

CCopyTree::Level::~Level() {
    if (m_parent) {
        m_paths->source.resize(m_parent->m_sourceLength);
        m_paths->target.resize(m_parent->m_targetLength);
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

void CCopyTree::Level::TellPassedOver(const std::vector<PassedOver>& passedOver) const {
    for (const auto& [name, status] : passedOver) {
        const std::string folder = m_paths->source.substr(0, m_sourceLength);
        const std::string path = name.empty() ? CFileUtils::UnterminateDir(folder.c_str()).AsStd() : folder + name;
        Tell(QvLeftOut::OfError(CString(path), ErrorOf(status)));
    }
}

/// Returns false for the destination itself, which is not copied into itself.
bool CCopyTree::Level::Open() {
    const Status source = OpenSource();
    if (m_above && source.ok() && m_from.IsSame(m_outermost->m_to)) return false;
    m_opened = OpenTarget();
    Report(m_opened, m_paths->target);
    if (m_parent && m_depth >= kHeldOpen) {
        if (source.ok()) m_parent->m_from.Suspend();
        if (m_to.GetBody()) m_parent->m_to.Suspend();
    }
    Report(source, m_paths->source);
    return true;
}

Status CCopyTree::Level::OpenTarget() {
    if (m_copy.m_dryRun) return FindTarget();
    if (m_parent)
        return m_parent->m_opened.ok() ? m_to.MakeIn(m_parent->m_to, NativePath(m_parent->m_entry.name), m_isFresh)
                                       : m_parent->m_opened;
    const CString target = m_paths->target;
    m_isFresh = !CFileUtils::IsDirectory(target);
    if (!QvCreateDirectory(target)) return Status::OfError(qv::platform::LastError());
    return m_to.Open(target, LastName::MayBeLink, FolderUse::LookedUpIn);
}

/// Opens the target if it exists. A missing target is fresh and stays closed.
Status CCopyTree::Level::FindTarget() {
    m_isFresh = true;
    if (m_parent) {
        FoundEntry found;
        found.name = m_parent->m_entry.name;
        if (!m_parent->m_opened.ok()) return m_parent->m_opened;
        if (!m_parent->m_to.GetBody() || !m_parent->m_to.Find(found).ok()) return {};
        m_isFresh = false;
        return m_to.OpenIn(m_parent->m_to, NativePath(found.name), FolderUse::LookedUpIn);
    }
    const CString target = CFileUtils::UnterminateDir(m_paths->target.c_str());
    const Status opened = m_to.Open(m_paths->target.c_str(), LastName::MayBeLink, FolderUse::LookedUpIn);
    m_isFresh = !opened.ok() && !CFileUtils::IsExist(target);
    if (!m_isFresh) return opened;
    // The deepest existing folder above it must be a folder.
    CString above = qv::FolderOf(target);
    while (!above.IsEmpty() && !CFileUtils::IsExist(above)) {
        const CString next = qv::FolderOf(above);
        if (next == above) return opened;
        above = next;
    }
    return above.IsEmpty() || CFileUtils::IsDirectory(above) ? Status() : opened;
}

Status CCopyTree::Level::OpenSource() {
    if (m_parent) return m_from.OpenIn(m_parent->m_from, NativePath(m_parent->m_entry.name));
    return m_from.Open(m_paths->source.c_str(), m_above ? LastName::NoLink : LastName::MayBeLink);
}

/// Restores the parent level's folders.
void CCopyTree::Level::Close() {
    if (!m_parent || m_depth < kHeldOpen) return;
    if (m_from.GetBody()) Report(m_parent->m_from.Resume(m_from), m_paths->source);
    if (!m_to.GetBody()) return;
    m_parent->m_opened = m_parent->m_to.Resume(m_to);
    Report(m_parent->m_opened, m_paths->target);
}

void CCopyTree::Level::CopyEntries() {
    if (!m_from.GetBody()) return;
    FileSearch search;
    search.StartIn(m_from);
    for (Fetch(search); !m_upcoming.empty(); Fetch(search)) {
        Upcoming next = std::move(m_upcoming.front());
        m_upcoming.pop_front();
        m_entry = std::move(next.entry);
        // Complete before the observer is called, so that it may open the file in any way.
        if (next.copy) m_entryCopy.emplace(next.copy.Get());
        TellPassedOver(next.passedOver);
        CopyNext();
        // Stop copying ahead when the copies are not used.
        if (m_entryCopy) m_ahead.isWanted = false;
        m_entryCopy.reset();
    }
    TellPassedOver(search.TakePassedOver());
    Report(search.LeftOut());
}

/// Reads the next entries up to a subfolder and starts copying files.
void CCopyTree::Level::Fetch(FileSearch& search) {
    const std::size_t most = m_ahead.executor.Threads() > 0 ? kMostUpcoming : 1;
    if (m_upcoming.size() > most / 2) return;  // wake a thread for several entries at once
    while (m_upcoming.size() < most && (m_upcoming.empty() || !m_upcoming.back().entry.IsFolder())) {
        Upcoming next;
        if (!search.Next(next.entry)) return;
        next.passedOver = search.TakePassedOver();
        if (MayCopyAhead(next.entry))
            next.copy = m_ahead.executor.Start([this, name = next.entry.name, source = SourceOf(next.entry)] {
                return FileCopy(m_from, name, source, m_to, name);
            });
        m_upcoming.push_back(std::move(next));
    }
}

/// True only in a folder that was just created: entries of an existing folder may not need copying.
bool CCopyTree::Level::MayCopyAhead(const FoundEntry& entry) const {
    const bool isFile = !entry.IsFolder() && !(entry.attributes & qv::platform::kDevice);
    return isFile && entry.size <= kLargestAhead && m_isFresh && m_opened.ok() && !m_copy.m_dryRun &&
           m_ahead.isWanted && m_ahead.files >= kFewFiles && m_ahead.executor.Threads() > 0;
}

void CCopyTree::Level::CopyNext() {
    if (!m_entry.IsFolder())
        CopyFile();
    else if (m_entry.IsLink())
        Tell(QvLeftOut::OfCause(From(), QvLeftOut::linkedFolder));
    else if (!m_entry.IsDots())
        m_copy.CopyTree(From(), To());
}

void CCopyTree::Level::CopyFile() {
    if (!m_isFresh && IsUpToDate()) return;
    ++m_ahead.files;
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

/// Whether the copy can be skipped. The target is made writable in either case.
bool CCopyTree::Level::IsUpToDate() {
    FoundEntry target;
    target.name = m_entry.name;
    if (!m_opened.ok() || !m_to.GetBody() || !m_to.Find(target).ok()) return false;
    // If it stays read-only, the copy reports the refusal.
    if (!m_copy.m_dryRun && target.attributes & kReadOnly && !target.IsFolder())
        m_to.MakeWritable(NativePath(target.name)).IgnoreError();
    if (m_copy.m_laterOnly && m_entry.IsLink()) return IsLinkUpToDate();
    const bool known = m_copy.m_laterOnly && m_entry.written != 0;
    return known && target.written / kTicksPerSecond >= m_entry.written / kTicksPerSecond;
}

/// A search may report a link's own time, which is not that of its file.
bool CCopyTree::Level::IsLinkUpToDate() const {
    qv::platform::FileInfo from, to;
    return StatusOf(From(), from).ok() && StatusOf(To(), to).ok() && from.modified != -1 &&
           to.modified >= from.modified;
}

Status CCopyTree::Level::CopyEntry() {
    if (!m_opened.ok()) return m_opened;
    if (m_copy.m_dryRun) return CheckEntry();
    qv::platform::CopiedBytes copied;
    if (ICopyProgress* const progress = m_copy.m_progress)
        copied = [progress](std::uint64_t bytes) { progress->OnCopyBytes(bytes); };
    if (m_entryCopy) {
        qv::platform::FileCopy copy = std::move(*m_entryCopy);
        m_entryCopy.reset();
        return copy.Commit(copied);
    }
    return qv::platform::CopyFileIn(m_from, m_entry.name, SourceOf(m_entry), m_to, m_entry.name, copied);
}

/// Returns what would prevent the entry from being copied, as far as that is known without copying.
Status CCopyTree::Level::CheckEntry() const {
    FoundEntry target;
    target.name = m_entry.name;
    if (m_to.GetBody() && m_to.Find(target).ok() && target.IsFolder()) return WhyNoFile(To());
    return m_entry.attributes & qv::platform::kDevice ? WhyNoFile(From()) : qv::platform::MayRead(From());
}
