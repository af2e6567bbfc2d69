#pragma once

#include <string>

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

}  // namespace qv::tool
