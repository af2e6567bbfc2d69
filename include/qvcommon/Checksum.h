#pragma once

/// @file CRC-32 as IEEE 802.3 defines it: reflected polynomial 0xEDB88320, start 0xFFFFFFFF, inverted at the end. The nine
/// bytes "123456789" give 0xCBF43926. It finds accidents, not forgeries.

#include <cstdint>
#include <string_view>

#include "qvcommon/framework/Collections.h"
#include "qvcommon/framework/File.h"

/// 0 for a length of 0 or less. Any thread. Uses the processor's carry-less multiplication where it has one.
QVCOMMON_API unsigned long QVCOMMON_CALL MemCRC(const char* data, int length);
QVCOMMON_API unsigned long QVCOMMON_CALL MemCRC(std::string_view data);

/// Of all bytes of a file, of any length, in constant memory; several threads read a large one. 0 when it cannot be opened or read to its end; share modes
/// count as for CFile with shareDenyNone.
QVCOMMON_API unsigned long QVCOMMON_CALL FileCRC(std::string_view path);

/// Carries a checksum on, for data that comes in pieces: that of `a` and `b` together is ContinueCRC(MemCRC(a), b). Start
/// with 0. Any thread; as fast as MemCRC.
QVCOMMON_API unsigned long QVCOMMON_CALL ContinueCRC(unsigned long crc, std::string_view data);

/// Receives the checksums of FileCRCs, on the thread that called it.
class QVCOMMON_API IChecksums {
public:
    virtual ~IChecksums();
    /// The checksum of paths[index], in the order of the paths. Where the file could not be read to its end, `crc` is 0 and
    /// `failure` says why; it is freed after the call. An exception ends the work and goes to the caller.
    virtual void OnChecksum(int index, unsigned long crc, CFileException* failure) = 0;
    /// So many bytes were read since the last call. It must not throw.
    virtual void OnBytes(std::uint64_t count);
};

/// FileCRC of each path, by several threads where there is enough to do.
QVCOMMON_API void QVCOMMON_CALL FileCRCs(const CStringArray& paths, IChecksums& checksums);
