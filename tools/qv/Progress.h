#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/qv/Command.h"

namespace qv::tool {

/// Gives a command -q, --quiet, with which no progress and no note is shown.
void AddQuiet(Command command, const char* description = "Show neither progress nor notes, only errors");
bool IsQuiet();
/// Writes a message to standard error that is no error, unless the user wants none.
void Note(const std::string& message);

/// Writes "qv: ", the message and a line end to standard error, visibly where that is a terminal.
void Complain(std::string_view message);

/// Empties the line that a Progress has written on the terminal, if one has: whoever prints calls it first.
void ClearProgressLine();

/// One line on standard error that counts, when that is a terminal; nothing otherwise. It is drawn at most ten times a
/// second and goes with the object.
class Progress {
public:
    /// What is counted: "files read". The text must outlive the object.
    explicit Progress(const char* what);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// False when nothing is drawn, so that nothing has to be found out for it.
    bool IsShown() const { return m_shown; }
    /// Makes the line tell how much of this is done, and how long the rest will take.
    void SetTotalBytes(std::uint64_t bytes) { m_totalBytes = bytes; }

    void Add(std::size_t count = 1);
    /// Makes the line tell how much is done, and how fast.
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

/// The bytes of all files that are there.
std::uint64_t BytesOf(const std::vector<std::string>& files);
/// The bytes of the files in a folder.
std::uint64_t BytesIn(const std::string& folder, bool recurse);

}  // namespace qv::tool
