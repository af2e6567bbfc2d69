#include "files/FolderWalk.h"

namespace qv {
namespace {

/// How many of the folders above the present one stay open.
constexpr std::size_t kHeldOpen = 64;

}  // namespace

using platform::EntryKind;
using platform::FolderEntry;
using platform::Status;

void FolderWalk::Walk(const CString& path) {
    Place first{.folder = {}, .path = path, .entry = {}};
    if (!first.path.AsStd().ends_with('\\')) first.path += '\\';
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
    Place place{.folder = {}, .path = {}, .entry = std::move(parent.subfolders.back())};
    parent.subfolders.pop_back();
    place.path = parent.PathOf(place.entry) + '\\';
    const Status status = place.folder.OpenIn(parent.folder, place.entry.name);
    if (status.ok())
        Enter(std::move(place), &parent);
    else
        OnFailure(status, place, &parent);
}

void FolderWalk::Leave() {
    Place left = std::move(m_places.back());
    m_places.pop_back();
    if (m_places.empty()) return;
    Place& parent = m_places.back();
    const Status status = parent.folder.TakeBack(left.folder);
    left.folder.Close();
    if (status.ok())
        OnLeave(parent, left.entry);
    else
        OnFailure(status, parent, nullptr);
}

}  // namespace qv
