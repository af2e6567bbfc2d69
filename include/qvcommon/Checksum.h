#pragma once

/// @file CRC-32 as defined by IEEE 802.3: reflected polynomial 0xEDB88320, initial value 0xFFFFFFFF, inverted at the
/// end. The nine bytes "123456789" give 0xCBF43926. Detects accidental changes, not forgeries.

#include <cstdint>
#include <string_view>

#include "qvcommon/framework/Collections.h"
#include "qvcommon/framework/File.h"

/// Returns the checksum; 0 if the length is 0 or less. Thread-safe. Uses the processor's carry-less multiplication if
/// available.
QVCOMMON_API unsigned long QVCOMMON_CALL MemCRC(const char* data, int length);
QVCOMMON_API unsigned long QVCOMMON_CALL MemCRC(std::string_view data);

/// Returns the checksum of a file of any length, in constant memory; several threads read a large one. 0 if it cannot
/// be opened or fully read; share modes apply as for CFile with shareDenyNone.
QVCOMMON_API unsigned long QVCOMMON_CALL FileCRC(std::string_view path);

/// Extends a checksum, for data that arrives in pieces: the checksum of `a` followed by `b` is ContinueCRC(MemCRC(a),
/// b). Start with 0. Thread-safe; as fast as MemCRC.
QVCOMMON_API unsigned long QVCOMMON_CALL ContinueCRC(unsigned long crc, std::string_view data);

/// Receives the checksums of FileCRCs, on the calling thread.
class QVCOMMON_API IChecksums {
public:
    virtual ~IChecksums();
    /// Called with the checksum of paths[index], in the order of the paths. If the file could not be fully read, `crc`
    /// is 0 and `failure` says why; it is freed after the call. An exception ends the operation and is passed to the
    /// caller.
    virtual void OnChecksum(int index, unsigned long crc, CFileException* failure) = 0;
    /// Called after `count` more bytes were read. Must not throw.
    virtual void OnBytes(std::uint64_t count);
};

/// Computes FileCRC of each path, on several threads if worthwhile.
QVCOMMON_API void QVCOMMON_CALL FileCRCs(const CStringArray& paths, IChecksums& checksums);
