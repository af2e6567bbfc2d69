#include "platform/FileSearch.h"

#include <windows.h>

namespace qv::platform {
namespace {

std::string FolderOf(const std::string& pattern) {
    return pattern.substr(0, pattern.find_last_of("\\/") + 1);
}

}  // namespace

struct FileSearch::State {
    HANDLE search = INVALID_HANDLE_VALUE;
    WIN32_FIND_DATAA data;
    bool first = true;

    State() = default;
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() {
        if (search != INVALID_HANDLE_VALUE) ::FindClose(search);
    }
};

FileSearch::FileSearch() = default;
FileSearch::~FileSearch() = default;
FileSearch::FileSearch(FileSearch&&) noexcept = default;
FileSearch& FileSearch::operator=(FileSearch&&) noexcept = default;

FileFailure FileSearch::Start(const char* pattern, LastName lastName) {
    m_state.reset();
    m_leftOut = {};
    if (lastName == LastName::NoLink && IsFolderLink(FolderOf(pattern).c_str()))
        return {FileCause::BadPath, ERROR_DIRECTORY};
    auto state = std::make_unique<State>();
    state->search = ::FindFirstFileA(pattern, &state->data);
    if (state->search == INVALID_HANDLE_VALUE)
        return ::GetLastError() == ERROR_FILE_NOT_FOUND ? FileFailure{} : LastFailureAt(pattern);
    m_state = std::move(state);
    return {};
}

bool FileSearch::Next(FoundEntry& entry) {
    if (!m_state) return false;
    if (!m_state->first && !::FindNextFileA(m_state->search, &m_state->data)) {
        if (::GetLastError() != ERROR_NO_MORE_FILES) m_leftOut = LastFailure();
        m_state.reset();
        return false;
    }
    m_state->first = false;
    CopyFindData(m_state->data, entry);
    return true;
}

}  // namespace qv::platform
