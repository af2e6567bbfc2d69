#include "files/FolderWalk.h"

#include "framework/PathText.h"

namespace qv {
namespace {

/// How many of the folders above the present one stay open.
constexpr std::size_t kHeldOpen = 64;

}  // namespace

using platform::EntryKind;
using platform::FolderEntry;
using platform::Status;

void FolderWalk::Walk(const CString& path) {
    m_path = path;
    if (!EndsWithOneOf(m_path, "\\")) m_path += '\\';
    Place first{.folder = {}, .pathLength = m_path.size(), .entry = {}};
    const Status status = first.folder.Open(path, platform::LastName::NoLink);
    if (!status.ok()) return OnFailure(status, first, nullptr);
    Enter(std::move(first), nullptr);
    while (!m_places.empty()) m_places.back().subfolders.empty() ? Leave() : Descend();
}

void FolderWalk::Enter(Place&& place, const Place* parent) {
    std::vector<FolderEntry> entries;
    const Status status = place.folder.List(entries);
    if (!status.ok()) OnFailure(status, place, parent);
    OnFolder(place, entries);
    for (FolderEntry& entry : entries)
        if (entry.kind == EntryKind::Folder) place.subfolders.push_back(std::move(entry));
    m_places.push_back(std::move(place));
    if (m_places.size() > kHeldOpen) m_places[m_places.size() - kHeldOpen - 1].folder.LetGo();
}

void FolderWalk::Descend() {
    Place& parent = m_places.back();
    Place place{.folder = {}, .pathLength = 0, .entry = std::move(parent.subfolders.back())};
    parent.subfolders.pop_back();
    m_path += platform::LibraryName(place.entry.name);
    m_path += '\\';
    place.pathLength = m_path.size();
    const Status status = place.folder.OpenIn(parent.folder, place.entry.name);
    if (status.ok()) return Enter(std::move(place), &parent);
    OnFailure(status, place, &parent);
    m_path.resize(parent.pathLength);
}

void FolderWalk::Leave() {
    Place left = std::move(m_places.back());
    m_places.pop_back();
    if (m_places.empty()) return OnEnd(left);
    Place& parent = m_places.back();
    m_path.resize(parent.pathLength);
    const Status status = parent.folder.TakeBack(left.folder);
    left.folder.Close();
    if (status.ok())
        OnLeave(parent, left.entry);
    else
        OnFailure(status, parent, nullptr);
}

}  // namespace qv
