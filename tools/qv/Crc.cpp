#include "tools/qv/Crc.h"

#include "qvcommon/Checksum.h"
#include "qvcommon/framework/File.h"

namespace qv::tool {
namespace {

void TryReading(const std::string& path) {
    CFile file(path.c_str(), CFile::modeRead | CFile::shareDenyNone);
    char buffer[4096];
    while (file.Read(buffer, sizeof buffer) > 0) continue;
}

}  // namespace

unsigned long CrcOf(const std::string& path) {
    const unsigned long crc = FileCRC(path);
    // 0 may also mean that the file could not be read.
    if (crc == 0) TryReading(path);
    return crc;
}

}  // namespace qv::tool
