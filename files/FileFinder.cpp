#include "qvcommon/FileFinder.h"

#include <algorithm>

#include "files/ListingsAhead.h"
#include "framework/FindRecord.h"
#include "qvcommon/FileUtils.h"

using qv::FolderListing;
using qv::ListingsAhead;
using qv::SearchRules;

namespace {

CString Joined(std::string_view folder, std::string_view separator, std::string_view name) {
    std::string path;
    path.reserve(folder.size() + separator.size() + name.size());
    path.append(folder).append(separator).append(name);
    return CString(std::move(path));
}

CString Below(const CString& offset, std::string_view name) {
    return Joined(offset, offset.IsEmpty() ? "" : "\\", name);
}

const std::shared_ptr<const SearchRules>& RulesOf(const std::shared_ptr<const SearchRules>& rules) {
    static const auto first = std::make_shared<const SearchRules>();
    return rules ? rules : first;
}

}  // namespace

/// Threads that read ahead share the rules, so a change makes a copy.
SearchRules& FileFinder::ChangeRules() {
    const auto changed = std::make_shared<SearchRules>(*RulesOf(m_rules));
    m_rules = changed;
    return *changed;
}

void FileFinder::SetIncludeDirectories(int mode) {
    ChangeRules().includeDirectories = mode;
}

void FileFinder::SetSearchPath(const char* path) {
    m_path = CFileUtils::TerminateDir(path);
}

void FileFinder::SetSearchMask(const char* mask) {
    SearchRules& rules = ChangeRules();
    rules.mask = mask;
    rules.listed.reset();
}

void FileFinder::SetSearchMasks(const CStringArray& masks) {
    SearchRules& rules = ChangeRules();
    rules.mask = "*.*";
    rules.listed = std::make_shared<const qv::NameMasks>(masks);
}

void FileFinder::SetExcludedMasks(const CStringArray& masks) {
    ChangeRules().excluded = std::make_shared<const qv::NameMasks>(masks);
}

void FileFinder::SetRecurse(int recurse) {
    ChangeRules().recurse = recurse != 0;
}

void FileFinder::SetRecordsOnDemand(int onDemand) {
    using qv::platform::Detail;
    ChangeRules().detail = qv::platform::GivenFor(onDemand ? Detail::NameAndKind : Detail::All);
}

void FileFinder::SetLeftOut(ILeftOut* observer) {
    m_leftOut = observer;
}

void FileFinder::Discover() {
    m_depths.RemoveAll();
    m_offsets.RemoveAll();
    m_files.RemoveAll();
    m_foundInfo.RemoveAll();
    m_parts.clear();
    ListingsAhead ahead(m_path);
    struct Use {
        Use(ListingsAhead*& current, ListingsAhead& its) : m_current(current), m_previous(current) { current = &its; }
        ~Use() { m_current = m_previous; }

        ListingsAhead*& m_current;
        ListingsAhead* const m_previous;
    } const use(m_ahead, ahead);
    Discover(m_path, CString(), 0);
}

void FileFinder::Discover(const CString& path, const CString& offset, int depth) {
    StartProgress();
    CStringArray subfolders;
    {
        FolderListing listing = ListingOf(path, offset.IsEmpty());
        subfolders = std::move(listing.Subfolders());
        TellLeftOut(listing);
        Keep(listing, offset, depth);
    }
    StopProgress();
    int expected = 0;
    for (int i = 0; i < subfolders.GetSize(); ++i) {
        const CString& name = subfolders[i];
        if (m_ahead && expected < i + ListingsAhead::kSiblings / 2) expected = ExpectAll(path, subfolders, i, expected);
        Discover(path + name + '\\', Below(offset, name), depth++);
    }
}

/// Returns the index of the first sibling that is not read ahead. Several are started at a time, to wake a thread once.
int FileFinder::ExpectAll(const CString& path, const CStringArray& subfolders, int current, int expected) const {
    const int end = std::min(subfolders.GetSize(), current + ListingsAhead::kSiblings);
    expected = std::max(expected, current + 1);
    while (expected < end && m_ahead->Expect(path + subfolders[expected] + '\\', RulesOf(m_rules))) ++expected;
    return expected;
}

FolderListing FileFinder::ListingOf(const CString& path, bool isOutermost) const {
    const auto& rules = RulesOf(m_rules);
    return m_ahead ? m_ahead->Take(path, isOutermost, rules) : ListingsAhead(path).Take(path, isOutermost, rules);
}

void FileFinder::TellLeftOut(const FolderListing& listing) const {
    if (!m_leftOut) return;
    for (const auto& passedOver : listing.LeftOut()) m_leftOut->OnLeftOut(qv::LeftOutOf(listing.Root(), passedOver));
}

void FileFinder::Keep(const FolderListing& listing, const CString& offset, int depth) {
    const qv::FoundFolder& met = listing.Entries();
    const auto folder = std::make_shared<qv::FoundFolder>(listing.Root(), RulesOf(m_rules)->detail);
    m_parts.push_back({folder, offset, static_cast<UINT>(depth), Count()});
    CString title;
    for (std::size_t i = 0; i < met.Size(); ++i) {
        const std::string_view name = met.NameOf(i);
        title = name.substr(0, name.rfind('.'));
        UpdateProgress(title);
        if (listing.IsListed(i)) folder->Add(met, i);
    }
    if (folder->Size() == 0 && m_parts.back().folder == folder) m_parts.pop_back();
    folder->Close();
}

std::size_t FileFinder::Count() const {
    return m_parts.empty() ? 0 : m_parts.back().first + m_parts.back().folder->Size();
}

/// Appends to an array what was found since it was last filled.
template <class Array, class Make>
const Array& FileFinder::Filled(Array& array, Make make) const {
    auto index = static_cast<std::size_t>(array.GetSize());
    const std::size_t count = Count();
    if (index == count) return array;
    if (count / 2 > array.AsStd().capacity()) array.AsStd().reserve(count);
    auto part = std::prev(std::ranges::upper_bound(m_parts, index, {}, &Part::first));
    for (; index < count; ++part)
        for (; index < part->first + part->folder->Size(); ++index) array.Add(make(*part, index - part->first));
    return array;
}

const CStringArray& FileFinder::GetFiles() const {
    return Filled(m_files, [](const Part& part, std::size_t index) {
        return Joined(part.folder->Root(), "", part.folder->NameOf(index));
    });
}

const CStringArray& FileFinder::GetFileOffsets() const {
    return Filled(m_offsets,
                  [](const Part& part, std::size_t index) { return Below(part.offset, part.folder->NameOf(index)); });
}

const CUIntArray& FileFinder::GetOffsetDepths() const {
    return Filled(m_depths, [](const Part& part, std::size_t) { return part.depth; });
}

const CArray<CFoundInfo>& FileFinder::GetFoundInfo() const {
    return Filled(m_foundInfo, [](const Part& part, std::size_t index) { return CFoundInfo(part.folder, index); });
}

void FileFinder::StartProgress() {}

void FileFinder::UpdateProgress(const char*) {}

void FileFinder::StopProgress() {}
