#include "qvcommon/Checksum.h"

#include "core/Crc32.h"
#include "framework/ReadAhead.h"
#include "qvcommon/framework/File.h"

unsigned long MemCRC(const char* data, int length) {
    return length > 0 ? qv::Crc32(0, data, static_cast<std::size_t>(length)) : 0;
}

unsigned long FileCRC(const char* path) {
    CFile file;
    if (!file.Open(path, CFile::modeRead | CFile::shareDenyNone)) return 0;
    std::uint32_t crc = 0;
    try {
        qv::ReadAhead blocks(file, file.GetLength());
        for (auto block = blocks.Next(); !block.empty(); block = blocks.Next())
            crc = qv::Crc32(crc, block.data(), block.size());
    } catch (CFileException* error) {
        error->Delete();
        return 0;
    }
    return crc;
}
