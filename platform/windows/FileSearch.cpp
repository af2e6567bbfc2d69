#include "platform/FileSearch.h"

#include "platform/Path.h"
#include "platform/windows/FindData.h"
#include "platform/windows/FolderBody.h"
#include "platform/windows/UniqueHandle.h"

namespace qv::platform {
namespace {

std::string FolderOf(const std::string& pattern) {
    return pattern.substr(0, pattern.find_last_of("\\/") + 1);
}

}  // namespace

struct FileSearch::State {
    WIN32_FIND_DATAA data;
    UniqueSearch search;
    bool first = true;
};

FileSearch::FileSearch() = default;
FileSearch::~FileSearch() = default;
FileSearch::FileSearch(FileSearch&&) noexcept = default;
FileSearch& FileSearch::operator=(FileSearch&&) noexcept = default;

Status FileSearch::Start(const char* pattern, LastName lastName) {
    m_state.reset();
    m_passedOver.clear();
    m_leftOut = {};
    if (lastName == LastName::NoLink && IsFolderLink(FolderOf(pattern).c_str()))
        return Status::OfError(ERROR_DIRECTORY);
    auto state = std::make_unique<State>();
    const auto found = sys::FindFirstFileA(NativePath(pattern).c_str(), &state->data);
    if (!found.ok()) return found.error() == ERROR_FILE_NOT_FOUND ? Status() : found.statusAt(pattern);
    state->search = UniqueSearch(found);
    m_state = std::move(state);
    return {};
}

void FileSearch::StartIn(const Folder& folder) {
    if (const Status started = Start(PathIn(folder, "*").c_str()); !started.ok()) PassOver("", started);
}

bool FileSearch::Next(FoundEntry& entry) {
    if (!m_state) return false;
    if (!std::exchange(m_state->first, false)) {
        const auto found = sys::FindNextFileA(m_state->search.Get(), &m_state->data);
        if (!found.ok()) {
            if (found.error() != ERROR_NO_MORE_FILES) PassOver("", found.status());
            m_state.reset();
            return false;
        }
    }
    CopyFindData(m_state->data, entry);
    return true;
}

void FileSearch::PassOver(std::string name, const Status& status) {
    m_leftOut = m_leftOut.Or(status);
    m_passedOver.push_back({std::move(name), status});
}

}  // namespace qv::platform
