#pragma once

/// @file The records exchanged between the cabinet classes and the cabinet engine. Sizes are in bytes; dates and times
/// are local, in the cabinet's format: date = (year - 1980) << 9 | month << 5 | day, time = hour << 11 | minute << 5 |
/// second / 2.

#include <cstdint>

#include "qvcommon/framework/String.h"

/// An error. Numbers as in CMakeCab::GetFciErrorString and CReadCab::GetFdiErrorString.
struct QvCabinetError {
    int error = 0;    ///< 0: no error
    int type = 0;     ///< the system's error number, if a callback stored one
    BOOL failed = 0;  ///< non-zero after a failure
};

/// The cabinet under construction.
struct QvCabinetDescription {
    std::uint32_t maximumSize = 0x7FFFFFFF;           ///< of a cabinet; the set grows by one when it is reached
    std::uint32_t folderThreshold = 0x7FFFFFFF;       ///< a folder of this size is closed before the next file
    std::uint16_t headerReserve = 0;                  ///< bytes reserved in the header, at most 60000
    std::uint8_t folderReserve = 0, dataReserve = 0;  ///< and in each folder, and each data block of the set
    int cabinetNumber = 0;                            ///< in the set, from 0
    int diskNumber = 0;                               ///< of the disk that the cabinet is for
    BOOL failOnIncompressible = 0;                    ///< non-zero: a block that does not compress is a failure
    std::uint16_t setId = 0;                          ///< the same in all cabinets of a set
    CString diskName = {};                            ///< of the disk that the cabinet is for; may be empty
    CString cabinetName = {};                         ///< the file's name
    CString cabinetPath = {};                         ///< its folder, with the final separator
};

/// The contents of a cabinet's header.
struct QvCabinetInfo {
    std::uint32_t size = 0;                      ///< of the cabinet
    std::uint16_t folders = 0, files = 0;        ///< numbers of entries
    std::uint16_t setId = 0, cabinetNumber = 0;  ///< of the set, and the index in it, from 0
    BOOL hasReserve = 0;                         ///< space is reserved in its headers
    BOOL hasPrevious = 0, hasNext = 0;           ///< part of a set: another one precedes, follows
};

/// A notification of the engine while it extracts members.
struct QvCabinetNotification {
    /// The event; it determines which members are meaningful.
    enum Type : int {
        /// A cabinet was opened: `name` is the next cabinet's file, `disk` its disk, `path` the folder being read, and
        /// the numbers are those of the set. -1 aborts.
        cabinetInfo = 0,
        /// A member that starts in an earlier cabinet than the first one read: `name`, and in `disk` the cabinet where
        /// it starts. It is skipped. -1 aborts.
        partialFile = 1,
        /// The next member: `name`, `size`, `date`, `time`, `attributes`, `folder`. The result is an open handle to
        /// write to, 0 to skip the member, -1 to abort.
        copyFile = 2,
        /// All of a member was written to `file`, which must be closed now. 0 reports a failure, -1 aborts.
        closeFileInfo = 3,
        /// The next cabinet of the set, `name` on `disk`, is needed from `path`. `error` is 0, or says why the cabinet
        /// found there before was rejected; a new `path` or `name` then makes the engine try again. -1 aborts.
        nextCabinet = 4,
        /// All members of a cabinet were processed. -1 aborts.
        enumerate = 5
    };

    std::uint32_t size = 0;                      ///< of the member
    CString name, disk, path;                    ///< depends on the type
    std::intptr_t file = -1;                     ///< the handle that copyFile returned
    std::uint16_t date = 0, time = 0;            ///< of the member's last change
    std::uint16_t attributes = 0;                ///< read-only 1, hidden 2, system 4, archive 32, executable 64
    std::uint16_t setId = 0, cabinetNumber = 0;  ///< of the set, and the index in it, from 0
    std::uint16_t folder = 0;                    ///< index of the member's folder in the cabinet, from 0
    int error = 0;                               ///< of nextCabinet: why the cabinet was rejected
};
