#pragma once

#include <chrono>
#include <cstddef>

namespace qv::tool {

/// One line on standard error that counts, when that is a terminal; nothing otherwise. The line goes with the object.
class Progress {
public:
    /// What is counted: "files read". The text has to outlive the object.
    explicit Progress(const char* what);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Add(std::size_t count = 1);

private:
    const char* m_what;
    bool m_shown;
    std::size_t m_count = 0;
    std::chrono::steady_clock::time_point m_next{};
};

}  // namespace qv::tool
