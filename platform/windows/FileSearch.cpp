#include "platform/FileSearch.h"

#include "platform/windows/FindData.h"
#include "platform/windows/FolderBody.h"
#include "platform/windows/UniqueHandle.h"

namespace qv::platform {
namespace {

bool IsInLinkedFolder(const std::wstring& pattern) {
    std::wstring folder = pattern.substr(0, pattern.find_last_of(L"\\/") + 1);
    while (folder.size() > 1 && (folder.back() == L'\\' || folder.back() == L'/')) folder.pop_back();
    return IsFolderLinkAt(folder);
}

}  // namespace

// A listing always contains everything.
Detail GivenFor(Detail) {
    return Detail::All;
}

Status FindEntry(const char* path, FoundEntry& entry) {
    WIN32_FIND_DATAW data;
    const auto found = sys::FindFirstFileW(WidePattern(path).c_str(), &data);
    if (!found.ok()) return found.status();
    const UniqueSearch search(found);
    std::string name = std::move(entry.name);
    const Status copied = CopyFindData(data, entry);
    entry.name = std::move(name);
    return copied;
}

struct FileSearch::State {
    WIN32_FIND_DATAW data;
    UniqueSearch search;
    bool first = true;

    Status Start(const std::wstring& pattern) {
        const auto found = sys::FindFirstFileW(pattern.c_str(), &data);
        search = UniqueSearch(found);
        return found.status();
    }
};

FileSearch::FileSearch() = default;
FileSearch::~FileSearch() = default;
FileSearch::FileSearch(FileSearch&&) noexcept = default;
FileSearch& FileSearch::operator=(FileSearch&&) noexcept = default;

Status FileSearch::Start(const char* pattern, LastName lastName, Detail) {
    m_state.reset();
    m_passedOver.clear();
    m_leftOut = {};
    const std::wstring wide = WidePattern(pattern);
    if (lastName == LastName::NoLink && IsInLinkedFolder(wide)) return Status::OfError(ERROR_DIRECTORY);
    auto state = std::make_unique<State>();
    const Status started = state->Start(wide);
    if (!started.ok()) return started.error() == ERROR_FILE_NOT_FOUND ? Status() : started;
    m_state = std::move(state);
    return {};
}

void FileSearch::StartIn(const Folder& folder) {
    m_passedOver.clear();
    m_leftOut = {};
    m_state = std::make_unique<State>();
    const Status started = m_state->Start(PathIn(folder, "*"));
    if (started.ok()) return;
    m_state.reset();
    PassOver("", started);
}

bool FileSearch::Next(FoundEntry& entry) {
    while (m_state) {
        const auto found = std::exchange(m_state->first, false)
                               ? Result<BOOL>(TRUE)
                               : sys::FindNextFileW(m_state->search.Get(), &m_state->data);
        if (!found.ok()) {
            if (found.error() != ERROR_NO_MORE_FILES) PassOver("", found.status());
            m_state.reset();
            return false;
        }
        const Status copied = CopyFindData(m_state->data, entry);
        if (copied.ok()) return true;
        PassOver(ShownPath(m_state->data.cFileName), copied);
    }
    return false;
}

void FileSearch::PassOver(std::string name, const Status& status) {
    m_leftOut = m_leftOut.Or(status);
    m_passedOver.push_back({std::move(name), status});
}

}  // namespace qv::platform
