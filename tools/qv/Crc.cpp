#include "tools/qv/Crc.h"

#include <memory>

#include "qvcommon/Checksum.h"
#include "qvcommon/framework/File.h"

namespace qv::tool {

unsigned long CrcOf(const std::string& path, Progress& progress) {
    // So much stays in the processor's own memory between reading and adding up.
    constexpr UINT kStep = 256 * 1024;
    CFile file(path.c_str(), CFile::modeRead | CFile::shareDenyNone);
    const auto buffer = std::make_unique_for_overwrite<char[]>(kStep);
    unsigned long crc = 0;
    while (const UINT count = file.Read(buffer.get(), kStep)) {
        crc = ContinueCRC(crc, {buffer.get(), count});
        progress.AddBytes(count);
    }
    return crc;
}

}  // namespace qv::tool
