#pragma once

/// @file Reading of enhanced metafiles record by record, directly from the file, without a graphics system. The format
/// is the published Enhanced Metafile format (MS-EMF); its numbers are little-endian, as on every system that the
/// library supports.

#include <cstring>

#include "qvcommon/framework/File.h"

/// A record as stored in the file: type and size, then its parameters up to `size` bytes in total. On Windows an
/// application may cast it to the system's ENHMETARECORD. Offsets are in bytes from the record's start.
struct EmfRecord {
    DWORD type;  ///< its number in the format
    DWORD size;  ///< in bytes, including these eight

    /// Returns whether `count` bytes at `offset` are within the record.
    bool Holds(std::uint64_t offset, std::uint64_t count) const { return offset <= size && count <= size - offset; }
    /// Returns the byte at `offset`, without a bounds check: see Holds.
    BYTE* At(std::size_t offset) { return reinterpret_cast<BYTE*>(this) + offset; }
    const BYTE* At(std::size_t offset) const { return reinterpret_cast<const BYTE*>(this) + offset; }
    /// Returns the 32-bit word at `offset`; 0 if it is not within the record.
    DWORD Word(std::size_t offset) const {
        DWORD word = 0;
        if (Holds(offset, sizeof word)) std::memcpy(&word, At(offset), sizeof word);
        return word;
    }
};

/// A record type's number and its published name.
struct ID_NAME_PAIR {
    DWORD id;          ///< the number
    const char* name;  ///< as in the format: "EMR_HEADER"
};

/// Reads a metafile, clears the bytes that the format leaves undefined, and calls a hook for some record types.
///
/// The cleared bytes are the unused space of font names, the padding of texts with an odd number of characters, and the
/// hatch of solid and hollow pens. Two metafiles that draw the same thus have the same bytes there. Applications derive
/// from this class and override hooks; the class itself produces no output.
///
/// Records are passed whole, in a buffer that the parser owns for the duration of the call, aligned for 32-bit words. A
/// hook may read and change the record within its size, and must not retain it. Nothing outside a record is read or
/// written, regardless of the offsets and counts in it: a clean-up ignores what is outside the record.
///
/// One object processes one file at a time; separate objects may be used on separate threads.
class QVCOMMON_API CParseEmf {
public:
    CParseEmf() = default;
    CParseEmf(const CParseEmf&) = default;
    CParseEmf& operator=(const CParseEmf&) = default;
    virtual ~CParseEmf();

    /// Clears the first-record flag, opens the file for reading, shared with all openers, processes its records and
    /// closes it. The file is also closed if a hook or an error raises an exception.
    /// @return the result of ProcessMetafileRecords. @throws CVorbexException*: Error(1) if the file cannot be opened.
    virtual int ProcessFile(const char* path);

    /// Hooks. The base versions do nothing.
    virtual void OnRoundRect(EmfRecord* record);       ///< type 44
    virtual void OnRectangle(EmfRecord* record);       ///< type 43
    virtual void OnEllipse(EmfRecord* record);         ///< type 42
    virtual void OnHeader(EmfRecord* record);          ///< the first record, if the first-record flag is set
    virtual void OnSetWindowOrgEx(EmfRecord* record);  ///< type 10

    /// Raises a CVorbexException* with severity 48, the number as code, and its text. If an override returns instead,
    /// reading ends with 0; after 3 it continues, and OnHeader receives the record.
    virtual void Error(int number);

    /// Reads the records from the file's position up to the end-of-file record (type 14).
    ///
    /// Each record is read whole, one at a time. A record shorter than 12 bytes is first read as 12 bytes, so the file
    /// must contain that many.
    ///
    /// @return 1 after the end-of-file record, with the file's position after it; 0 if the file ends before another
    /// record's first 12 bytes.
    /// @throws CVorbexException*: Error(5) if a record's size is below 8 or beyond the rest of the file, or if reading
    /// fails; Error(6) if memory cannot be allocated.
    ///
    /// Reads ahead: the file's position is unspecified while a hook runs, after 0, and after an exception.
    virtual int ProcessMetafileRecords(CFile& file);

    /// Raises Error(3) unless the type is 1 and the signature, the word at byte 40, is 0x464D4520.
    virtual void CheckMetafileHeaderRecord(EmfRecord* record);
    /// Passes types 82, 84 and 95 to their clean-ups and all others to ParseGenericMetafileRecord.
    virtual void ParseMetafileRecord(EmfRecord* record);
    /// Calls the record's hook. With the first-record flag set, calls CheckMetafileHeaderRecord and OnHeader instead,
    /// and clears the flag.
    virtual void ParseGenericMetafileRecord(EmfRecord* record);

    /// Each: Clean-ups. Each finally passes the record to ParseGenericMetafileRecord.
    virtual void ParseExtCreateFontIndirectW(EmfRecord* record);
    virtual void ParseExtCreatePen(EmfRecord* record);
    virtual void ParseExtTextOutW(EmfRecord* record);

    /// Zeroes the characters after the terminating zero, up to `count` characters in total. A buffer without one in its
    /// first `count` characters is unchanged.
    virtual void ZeroOutUnusedStringSpaceW(char16_t* buffer, unsigned count);

    /// Copies the name of a record type as strncpy does: at most `size` bytes, padded with zero bytes, and NOT
    /// zero-terminated if the name fills the buffer. A type without a name gives "Unknown function: " and its low 16
    /// bits in hexadecimal, up to 23 bytes REGARDLESS of `size`.
    virtual void GetFunctionNameFromId(unsigned long type, char* buffer, unsigned size);
    /// Returns the index of the first entry with this number, or -1.
    virtual int GetTableIndexFromId(unsigned long type, const ID_NAME_PAIR* table, int count);
    /// Returns the index of the first entry with this name, ignoring the case of ASCII letters, or -1.
    virtual int GetTableIndexFromName(const char* name, const ID_NAME_PAIR* table, int count);

protected:
    /// Non-zero: the next record must be a header. ProcessFile clears it and nothing here sets it, so the header is
    /// checked only if a derived class sets it before the first record, as in its ProcessMetafileRecords.
    std::int32_t m_firstRecord = 0;
};
