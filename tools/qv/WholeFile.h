#pragma once

#include <string>

#include "qvcommon/SaveFile.h"

namespace qv::tool {

/// A new version of a file that takes the old one's place only when it is complete. The old one may be what the new one is
/// made from. What is written is gathered into large pieces.
class WholeFile : public CSaveFile {
public:
    /// @throws CFileException* when the file cannot be made.
    explicit WholeFile(const std::string& path);

    void Write(const void* data, UINT size) override;
    /// @throws CFileException*; there is no new version then.
    void Commit();

private:
    void WriteGathered();

    std::string m_gathered;
};

}  // namespace qv::tool
