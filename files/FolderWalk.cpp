#include "files/FolderWalk.h"

#include <algorithm>

#include "framework/PathText.h"

namespace qv {
namespace {

/// How many of the folders above the current one stay open.
constexpr std::size_t kHeldOpen = 64;

/// A shorter walk ends before a thread would help.
constexpr int kFewFolders = 8;
/// How many subfolders of one folder are visited ahead, and how many folders in total.
constexpr std::size_t kSiblings = 8;
constexpr int kMostAhead = 64;

}  // namespace

using platform::EntryKind;
using platform::FolderEntry;
using platform::Status;

void FolderWalk::Walk(const CString& path, platform::LastName lastName) {
    m_path = path;
    if (!EndsWithOneOf(m_path, "\\")) m_path += '\\';
    // Threads treat no further folders, even after an exception.
    struct End {
        ~End() { m_places.clear(); }
        std::vector<Place>& m_places;
    } const end{m_places};
    Place first{.folder = {}, .pathLength = m_path.size(), .entry = {}};
    Visit visit;
    visit.opened = visit.folder.Open(path, lastName);
    if (!visit.opened.ok()) return OnFailure(visit.opened, first, nullptr);
    Enter(std::move(first), ListAndTreat(std::move(visit)), nullptr);
    while (!m_places.empty()) m_places.back().subfolders.empty() ? Leave() : Descend();
}

/// Lists and treats the folder if it is open.
FolderWalk::Visit FolderWalk::ListAndTreat(Visit visit) const {
    if (!visit.opened.ok()) return visit;
    visit.listed = visit.folder.List(visit.entries);
    Treat(visit);
    return visit;
}

void FolderWalk::Enter(Place&& place, Visit&& visit, const Place* parent) {
    ++m_entered;
    place.folder = std::move(visit.folder);
    if (!visit.listed.ok()) OnFailure(visit.listed, place, parent);
    OnFolder(place, visit);
    for (FolderEntry& entry : visit.entries)
        if (entry.kind == EntryKind::Folder) place.subfolders.push_back({std::move(entry), {}});
    m_places.push_back(std::move(place));
    if (m_places.size() > kHeldOpen) m_places[m_places.size() - kHeldOpen - 1].folder.Suspend();
}

/// Opens the folders after the next one while their parent is certain to be open.
void FolderWalk::LookAhead(Place& place) {
    std::vector<Subfolder>& folders = place.subfolders;
    if (m_entered < kFewFolders || m_executor.Threads() == 0) return;
    const std::size_t left = folders.size() - 1, count = std::min(left, kSiblings);
    if (count < 2 || folders[left - count / 2].visit) return;  // wake a thread for several folders at once
    for (std::size_t i = left; i-- > left - count && m_seenAhead < kMostAhead;) {
        if (folders[i].visit) continue;
        Visit visit;
        visit.opened = visit.folder.OpenIn(place.folder, folders[i].entry.name);
        folders[i].visit =
            m_executor.Start([this, opened = std::move(visit)]() mutable { return ListAndTreat(std::move(opened)); });
        ++m_seenAhead;
    }
}

void FolderWalk::Descend() {
    Place& parent = m_places.back();
    LookAhead(parent);
    Subfolder next = std::move(parent.subfolders.back());
    parent.subfolders.pop_back();
    Place place{.folder = {}, .pathLength = 0, .entry = std::move(next.entry)};
    m_path += platform::LibraryName(place.entry.name);
    m_path += '\\';
    place.pathLength = m_path.size();
    Visit visit;
    if (next.visit) {
        --m_seenAhead;
        visit = next.visit.Get();
    } else {
        visit.opened = visit.folder.OpenIn(parent.folder, place.entry.name);
        visit = ListAndTreat(std::move(visit));
    }
    if (visit.opened.ok()) return Enter(std::move(place), std::move(visit), &parent);
    OnFailure(visit.opened, place, &parent);
    m_path.resize(parent.pathLength);
}

void FolderWalk::Leave() {
    Place left = std::move(m_places.back());
    m_places.pop_back();
    if (m_places.empty()) return OnEnd(left);
    Place& parent = m_places.back();
    m_path.resize(parent.pathLength);
    const Status status = parent.folder.Resume(left.folder);
    left.folder.Close();
    if (status.ok())
        OnLeave(parent, left.entry);
    else
        OnFailure(status, parent, nullptr);
}

}  // namespace qv
