#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/qv/Command.h"

namespace qv::tool {

/// Adds the option -q, --quiet to a command, which suppresses progress and notes.
void AddQuiet(Command command, const char* description = "Show neither progress nor notes, only errors");
bool IsQuiet();
/// Writes an informational message to standard error unless the user has suppressed them.
void Note(const std::string& message);

/// Writes "qv: ", the message and a line end to standard error, escaped if that is a terminal.
void Complain(std::string_view message);

/// Clears the progress line on the terminal, if there is one. Must be called before anything is printed.
void ClearProgressLine();

/// A progress line on standard error if that is a terminal; otherwise a no-op. It is drawn at most ten times a second
/// and cleared by the destructor.
class Progress {
public:
    /// What is counted: "files read". The text must outlive the object.
    explicit Progress(const char* what);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// False if nothing is drawn, so that totals need not be determined.
    bool IsShown() const { return m_shown; }
    /// Makes the line show the fraction done and the remaining time.
    void SetTotalBytes(std::uint64_t bytes) { m_totalBytes = bytes; }

    void Add(std::size_t count = 1);
    /// Makes the line show the amount done and the speed.
    void AddBytes(std::uint64_t bytes);

private:
    using Clock = std::chrono::steady_clock;

    void Draw();
    std::string BytesAndTime(Clock::time_point now) const;

    const char* m_what;
    bool m_shown;
    std::size_t m_count = 0;
    std::uint64_t m_bytes = 0, m_totalBytes = 0;
    Clock::time_point m_started = Clock::now(), m_next{};
};

/// Returns the total size of all files that exist.
std::uint64_t BytesOf(const std::vector<std::string>& files);
/// Returns the total size of the files in a folder.
std::uint64_t BytesIn(const std::string& folder, bool recurse);

}  // namespace qv::tool
