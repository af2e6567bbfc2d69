#pragma once

#include <chrono>
#include <cstddef>

namespace qv::tool {

/// Empties the line that a Progress has written on the terminal, if one has: whoever prints calls it first.
void ClearProgressLine();

/// One line on standard error that counts, when that is a terminal; nothing otherwise. The line goes with the object.
class Progress {
public:
    /// What is counted: "files read", of how many; 0 when that is not known. The text has to outlive the object.
    explicit Progress(const char* what, std::size_t total = 0);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Add(std::size_t count = 1);

private:
    const char* m_what;
    std::size_t m_total;
    bool m_shown;
    std::size_t m_count = 0;
    std::chrono::steady_clock::time_point m_next{};
};

}  // namespace qv::tool
