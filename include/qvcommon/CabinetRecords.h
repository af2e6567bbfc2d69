#pragma once

/// @file The records in which the cabinet classes and the cabinet engine speak to each other. Sizes are bytes; dates and
/// times are the cabinet's own, local: date = (year - 1980) << 9 | month << 5 | day, time = hour << 11 | minute << 5 |
/// second / 2.

#include <cstdint>

#include "qvcommon/framework/String.h"

/// What went wrong. Numbers as CMakeCab::GetFciErrorString and CReadCab::GetFdiErrorString tell them.
struct QvCabinetError {
    int error = 0;    ///< 0 for none
    int type = 0;     ///< the system's own number, where a callback left one
    BOOL failed = 0;  ///< non-zero when something went wrong
};

/// The cabinet under construction.
struct QvCabinetDescription {
    std::uint32_t maximumSize = 0x7FFFFFFF;           ///< of a cabinet; a set grows by one more when it is reached
    std::uint32_t folderThreshold = 0x7FFFFFFF;       ///< a folder that holds as much is closed before the next file
    std::uint16_t headerReserve = 0;                  ///< bytes kept free in the header, at most 60000
    std::uint8_t folderReserve = 0, dataReserve = 0;  ///< and in each folder's and each data block's
    int cabinetNumber = 0;                            ///< in the set, from 0
    int diskNumber = 0;                               ///< of the disk that the cabinet is for
    BOOL failOnIncompressible = 0;                    ///< non-zero: a block that compression makes longer is a failure
    std::uint16_t setId = 0;                          ///< the same in all cabinets of a set
    CString diskName;                                 ///< of the disk that the cabinet is for; may be empty
    CString cabinetName;                              ///< the file's name
    CString cabinetPath;                              ///< its folder, with the final separator
};

/// What the head of a cabinet says.
struct QvCabinetInfo {
    std::uint32_t size = 0;                      ///< of the cabinet
    std::uint16_t folders = 0, files = 0;        ///< how many the cabinet has
    std::uint16_t setId = 0, cabinetNumber = 0;  ///< of the set, and the place in it, from 0
    BOOL hasReserve = 0;                         ///< space is kept free in its headers
    BOOL hasPrevious = 0, hasNext = 0;           ///< it continues another one of its set, is continued by one
};

/// What the engine tells while it copies members out of a cabinet.
struct QvCabinetNotification {
    /// What happened, and so which members mean something.
    enum Type : int {
        /// A cabinet was opened: `name` is the next cabinet's file, `disk` its disk, `path` the folder that is read from,
        /// and the numbers are those of the set. -1 stops.
        cabinetInfo = 0,
        /// A member whose start lies in an earlier cabinet than the first one read: `name`, and in `disk` the cabinet where
        /// it starts. It is passed over. -1 stops.
        partialFile = 1,
        /// A member comes: `name`, `size`, `date`, `time`, `attributes`, `folder`. The answer is an open handle to write it
        /// to, 0 to pass it over, -1 to stop.
        copyFile = 2,
        /// All of a member was written to `file`, which has to be closed now. 0 means that this failed, -1 stops.
        closeFileInfo = 3,
        /// The next cabinet of the set, `name` on `disk`, is needed from `path`. `error` is 0, or tells why the cabinet
        /// found there before would not do; a new `path` or `name` then has it looked for there. -1 stops.
        nextCabinet = 4,
        /// The members of a cabinet were gone through. -1 stops.
        enumerate = 5
    };

    std::uint32_t size = 0;                      ///< of the member
    CString name, disk, path;                    ///< as the type says
    std::intptr_t file = -1;                     ///< the handle that copyFile answered
    std::uint16_t date = 0, time = 0;            ///< of the member's last change
    std::uint16_t attributes = 0;                ///< read-only 1, hidden 2, system 4, archive 32, executable 64
    std::uint16_t setId = 0, cabinetNumber = 0;  ///< of the set, and the place in it, from 0
    std::uint16_t folder = 0;                    ///< the number of the member's folder in the cabinet, from 0
    int error = 0;                               ///< of nextCabinet: why the cabinet would not do
};
