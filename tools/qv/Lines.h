#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "qvcommon/framework/File.h"

namespace qv::tool {

/// Lines for standard output, written in bulk, but within a tenth of a second while lines come. The rest is written at the
/// end, where a failure is ignored: call Write to learn of it.
class Lines {
public:
    explicit Lines(char end = '\n') : m_end(end) {}
    ~Lines();
    Lines(const Lines&) = delete;
    Lines& operator=(const Lines&) = delete;

    /// @throws CFileException*, as Write.
    void Add(const std::string& line);
    /// Adds a line with a name from outside, visibly where standard output is a terminal, but as it is between zero bytes.
    void AddName(const std::string& name, std::string_view before = {}, std::string_view after = {});
    void Write();

private:
    void End();

    char m_end;
    std::string m_text;
    std::chrono::steady_clock::time_point m_next{};
};

/// Lines that have to be seen at once, written from where no exception may leave.
class LiveLines {
public:
    explicit LiveLines(char end = '\n') : m_end(end) {}

    /// False when it failed, now or before: nothing is written any more.
    bool Write(const std::string& line);
    /// @throws CFileException* when a line could not be written.
    void Check() const;

private:
    char m_end;
    std::unique_ptr<CFileException> m_failure;
};

}  // namespace qv::tool
