#pragma once

#include <string>

#include "qvcommon/TempFile.h"
#include "qvcommon/framework/StdioFile.h"

namespace qv::tool {

/// A file that takes its name only when it is complete: until then it lies beside it, and goes if nothing comes of it. A
/// file that has the name keeps it until then, so it may be what the new one is made from.
class WholeFile {
public:
    /// @throws Failed when the folder does not exist, CFileException* when the file cannot be made.
    explicit WholeFile(const std::string& path);

    /// Open for writing, in binary mode.
    CStdioFile& File() { return m_file; }
    /// @throws CFileException* or std::filesystem::filesystem_error; there is no new file then.
    void Commit();

private:
    std::string m_path;
    CTempFile m_temporary;  // outlives the file, which is closed before it is deleted
    CStdioFile m_file;
};

}  // namespace qv::tool
