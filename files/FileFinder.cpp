#include "qvcommon/FileFinder.h"

#include "files/NameMasks.h"
#include "qvcommon/FileUtils.h"

namespace {

constexpr const char* kEveryName = "*.*";

CString Below(const CString& offset, const CString& name) {
    if (offset.IsEmpty()) return name;
    std::string path;
    path.reserve(offset.AsStd().size() + 1 + name.AsStd().size());
    path.append(offset).append(1, '\\').append(name);
    return CString(std::move(path));
}

/// The search path itself may be a link. What lies below it may not: it could have become one since it was listed.
DWORD OptionsFor(const CString& offset) {
    return offset.IsEmpty() ? 0 : CFileFind::refuseLinkedFolder;
}

}  // namespace

void FileFinder::SetIncludeDirectories(int mode) {
    m_includeDirectories = mode;
}

void FileFinder::SetSearchPath(const char* path) {
    m_path = CFileUtils::TerminateDir(path);
}

void FileFinder::SetSearchMask(const char* mask) {
    m_mask = mask;
    m_listed.reset();
}

void FileFinder::SetSearchMasks(const CStringArray& masks) {
    m_mask = kEveryName;
    m_listed = std::make_shared<const qv::NameMasks>(masks);
}

void FileFinder::SetExcludedMasks(const CStringArray& masks) {
    m_excluded = std::make_shared<const qv::NameMasks>(masks);
}

void FileFinder::SetRecurse(int recurse) {
    m_recurse = recurse;
}

void FileFinder::SetLeftOut(ILeftOut* observer) {
    m_leftOut = observer;
}

void FileFinder::Discover() {
    m_depths.RemoveAll();
    m_offsets.RemoveAll();
    m_files.RemoveAll();
    m_foundInfo.RemoveAll();
    Discover(m_path, CString(), 0);
}

void FileFinder::Discover(const CString& path, const CString& offset, int depth) {
    // A mask that takes every name finds the subfolders and all that is left out in one search.
    const bool one = !m_recurse || m_mask == kEveryName || m_mask == "*";
    CStringArray subfolders;
    StartProgress();
    DiscoverEntries(path, offset, depth, one ? &subfolders : nullptr);
    StopProgress();
    if (!m_recurse) return;
    if (!one) subfolders = Subfolders(path, offset);
    for (const CString& name : subfolders) Discover(path + name + '\\', Below(offset, name), depth++);
}

void FileFinder::DiscoverEntries(const CString& path, const CString& offset, int depth, CStringArray* subfolders) {
    CQvFileFind find;
    if (subfolders) find.SetLeftOut(m_leftOut);
    for (BOOL more = find.FindFile(path + m_mask, OptionsFor(offset)); more;) {
        more = find.FindNextFile();
        UpdateProgress(find.GetFileTitle());
        if (IsListed(find)) Keep(find, offset, depth);
        if (subfolders && m_recurse && IsToBeEntered(find)) subfolders->Add(find.GetFileName());
    }
}

bool FileFinder::IsListed(const CQvFileFind& find) const {
    const bool kind = find.IsDirectory() ? m_includeDirectories != 0 && !find.IsDots() : m_includeDirectories != 1;
    if (!kind || (!m_listed && !m_excluded)) return kind;
    const CString name = find.GetFileName();
    return (!m_listed || m_listed->Match(name)) && !(m_excluded && m_excluded->Match(name));
}

bool FileFinder::IsToBeEntered(const CFileFind& find) const {
    return find.IsDirectory() && !find.IsDots() && !find.IsLink() &&
           !(m_excluded && m_excluded->Match(find.GetFileName()));
}

CStringArray FileFinder::Subfolders(const CString& path, const CString& offset) const {
    CStringArray names;
    CFileFind find;
    find.SetLeftOut(m_leftOut);
    for (BOOL more = find.FindFile(path + kEveryName, OptionsFor(offset)); more;) {
        more = find.FindNextFile();
        if (IsToBeEntered(find)) names.Add(find.GetFileName());
    }
    return names;
}

void FileFinder::Keep(const CQvFileFind& find, const CString& offset, int depth) {
    m_files.Add(find.GetFilePath());
    m_foundInfo.Add(find.GetFoundInfo());
    m_depths.Add(static_cast<UINT>(depth));
    m_offsets.Add(Below(offset, find.GetFileName()));
}

const CStringArray& FileFinder::GetFiles() const {
    return m_files;
}

const CStringArray& FileFinder::GetFileOffsets() const {
    return m_offsets;
}

const CUIntArray& FileFinder::GetOffsetDepths() const {
    return m_depths;
}

const CArray<CFoundInfo>& FileFinder::GetFoundInfo() const {
    return m_foundInfo;
}

void FileFinder::StartProgress() {}

void FileFinder::UpdateProgress(const char*) {}

void FileFinder::StopProgress() {}
