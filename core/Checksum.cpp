#include "qvcommon/Checksum.h"

#include <memory>

#include "core/Crc32.h"
#include "qvcommon/framework/File.h"

unsigned long MemCRC(const char* data, int length) {
    return length > 0 ? MemCRC(std::string_view(data, static_cast<std::size_t>(length))) : 0;
}

unsigned long MemCRC(std::string_view data) {
    return qv::Crc32(0, data.data(), data.size());
}

unsigned long ContinueCRC(unsigned long crc, std::string_view data) {
    return qv::Crc32(static_cast<std::uint32_t>(crc), data.data(), data.size());
}

unsigned long FileCRC(std::string_view path) {
    // So much stays in the processor's own memory between reading and adding up, in few calls of the system.
    constexpr UINT kStep = 256 * 1024;
    CFile file;
    if (!file.Open(CString(path), CFile::modeRead | CFile::shareDenyNone)) return 0;
    const auto buffer = std::make_unique_for_overwrite<char[]>(kStep);
    std::uint32_t crc = 0;
    try {
        while (const UINT count = file.Read(buffer.get(), kStep)) crc = qv::Crc32(crc, buffer.get(), count);
    } catch (CFileException* error) {
        error->Delete();
        return 0;
    }
    return crc;
}
