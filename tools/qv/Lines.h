#pragma once

#include <memory>
#include <string>

#include "qvcommon/framework/File.h"

namespace qv::tool {

/// Lines for standard output, written in bulk. What is left is written at the end, without a word when that fails: call
/// Write to learn of it.
class Lines {
public:
    Lines() = default;
    ~Lines();
    Lines(const Lines&) = delete;
    Lines& operator=(const Lines&) = delete;

    /// @throws CFileException*, as Write.
    void Add(const std::string& line);
    void Write();

private:
    std::string m_text;
};

/// Lines that have to be seen at once, written from where no exception may leave.
class LiveLines {
public:
    /// False when it failed, now or before: nothing is written any more.
    bool Write(const std::string& line);
    /// @throws CFileException* when a line could not be written.
    void Check() const;

private:
    std::unique_ptr<CFileException> m_failure;
};

}  // namespace qv::tool
