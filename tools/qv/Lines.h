#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "qvcommon/framework/File.h"

namespace qv::tool {

/// Buffered lines for standard output, written at least every tenth of a second while lines are added. The destructor
/// writes the rest and ignores failures: call Write to have them reported.
class Lines {
public:
    explicit Lines(char end = '\n') : m_end(end) {}
    ~Lines();
    Lines(const Lines&) = delete;
    Lines& operator=(const Lines&) = delete;

    /// @throws CFileException*, as Write.
    void Add(const std::string& line);
    /// Adds a line with an untrusted name, escaped if standard output is a terminal, verbatim if lines end in zero
    /// bytes.
    void AddName(const std::string& name, std::string_view before = {}, std::string_view after = {});
    void Write();

private:
    void End();

    char m_end;
    std::string m_text;
    std::chrono::steady_clock::time_point m_next{};
};

/// Unbuffered lines, written from code that must not throw.
class LiveLines {
public:
    explicit LiveLines(char end = '\n') : m_end(end) {}

    /// Returns false after a failure, now or earlier: nothing more is written.
    bool Write(const std::string& line);
    /// @throws CFileException* when a line could not be written.
    void Check() const;

private:
    char m_end;
    std::unique_ptr<CFileException> m_failure;
};

}  // namespace qv::tool
