#pragma once

/// @file Enhanced metafiles, walked record by record straight from the file, without a graphics system. The format is the
/// published Enhanced Metafile format (MS-EMF); its numbers are little-endian, as on every system of this library.

#include <cstring>

#include "qvcommon/framework/File.h"

/// A record as it stands in the file: type and size, then its parameters up to `size` bytes in all. An application on
/// Windows may cast it to the system's ENHMETARECORD. Offsets count bytes from the record's start.
struct EmfRecord {
    DWORD type;  ///< its number in the format
    DWORD size;  ///< in bytes, with these eight

    /// Whether `count` bytes at `offset` lie in the record.
    bool Holds(std::uint64_t offset, std::uint64_t count) const { return offset <= size && count <= size - offset; }
    /// The byte at `offset`, which is not checked: see Holds.
    BYTE* At(std::size_t offset) { return reinterpret_cast<BYTE*>(this) + offset; }
    const BYTE* At(std::size_t offset) const { return reinterpret_cast<const BYTE*>(this) + offset; }
    /// The 32-bit word at `offset`; 0 where the record does not hold it.
    DWORD Word(std::size_t offset) const {
        DWORD word = 0;
        if (Holds(offset, sizeof word)) std::memcpy(&word, At(offset), sizeof word);
        return word;
    }
};

/// A record type's number and its published name.
struct ID_NAME_PAIR {
    DWORD id;          ///< the number
    const char* name;  ///< as the format calls it: "EMR_HEADER"
};

/// Walks a metafile, clears the bytes that the format leaves undefined, and calls a hook for some record types.
///
/// What is cleared: the unused space of font names, the padding of texts with an odd number of characters, and the hatch of
/// solid and hollow pens. Two metafiles that draw the same thing so carry the same bytes there. Applications derive from
/// this class and override hooks; the class itself produces nothing.
///
/// Records are passed whole, in a buffer that the parser owns for the duration of the call, aligned for 32-bit words. A
/// hook may read and change the record within its size, and must not keep it. Nothing outside a record is read or written,
/// whatever the offsets and counts inside it say: a clean-up leaves alone what the record does not hold.
///
/// One object walks one file at a time; separate objects may run on separate threads.
class QVCOMMON_API CParseEmf {
public:
    CParseEmf() = default;
    CParseEmf(const CParseEmf&) = default;
    CParseEmf& operator=(const CParseEmf&) = default;
    virtual ~CParseEmf();

    /// Clears the first-record flag, opens the file for reading, shared with everyone, walks its records and closes it. The
    /// file is closed too when a hook or an error raises something.
    /// @return what ProcessMetafileRecords gave. @throws CVorbexException*: Error(1) when the file cannot be opened.
    virtual int ProcessFile(const char* path);

    /// Hooks. The base does nothing.
    virtual void OnRoundRect(EmfRecord* record);       ///< type 44
    virtual void OnRectangle(EmfRecord* record);       ///< type 43
    virtual void OnEllipse(EmfRecord* record);         ///< type 42
    virtual void OnHeader(EmfRecord* record);          ///< the first record, when the first-record flag is set
    virtual void OnSetWindowOrgEx(EmfRecord* record);  ///< type 10

    /// Raises a CVorbexException* with severity 48, the number as code, and its text. Where an override returns
    /// instead, the walk ends with 0.
    virtual void Error(int number);

    /// Walks the records from the file's position on, up to the end-of-file record (type 14).
    ///
    /// Each record is read whole, one at a time. A record shorter than 12 bytes is read as 12 bytes first, so it needs that
    /// many in the file.
    ///
    /// @return 1 after the end-of-file record, the file's position then behind it; 0 when the file ends before another
    /// record's first 12 bytes.
    /// @throws CVorbexException*: Error(5) when a record's size is below 8 or beyond what is left of the file, or when
    /// reading fails; Error(6) when memory for the record cannot be had. The file's position is then not defined.
    virtual int ProcessMetafileRecords(CFile& file);

    /// Raises Error(3) unless the type is 1 and the signature, the word at byte 40, is 0x464D4520.
    virtual void CheckMetafileHeaderRecord(EmfRecord* record);
    /// Passes types 82, 84 and 95 to their clean-ups and every other to ParseGenericMetafileRecord.
    virtual void ParseMetafileRecord(EmfRecord* record);
    /// Calls the record's hook. With the first-record flag set it calls CheckMetafileHeaderRecord and OnHeader instead, and
    /// clears the flag.
    virtual void ParseGenericMetafileRecord(EmfRecord* record);

    /// Each: Clean-ups. Each ends by passing the record to ParseGenericMetafileRecord.
    virtual void ParseExtCreateFontIndirectW(EmfRecord* record);
    virtual void ParseExtCreatePen(EmfRecord* record);
    virtual void ParseExtTextOutW(EmfRecord* record);

    /// Zeroes the characters behind the terminating zero, up to `count` characters in all. A buffer without one in its
    /// first `count` characters stays as it is.
    virtual void ZeroOutUnusedStringSpaceW(char16_t* buffer, unsigned count);

    /// Copies the name of a record type as strncpy does: at most `size` bytes, filled up with zero bytes, and NO zero byte
    /// at the end when the name fills the buffer. A type without a name gives "Unknown function: " and its low 16 bits in
    /// hexadecimal, up to 23 bytes WHATEVER `size` says.
    virtual void GetFunctionNameFromId(unsigned long type, char* buffer, unsigned size);
    /// The index of the first entry with this number, or -1.
    virtual int GetTableIndexFromId(unsigned long type, const ID_NAME_PAIR* table, int count);
    /// The index of the first entry with this name, without regard to the case of ASCII letters, or -1.
    virtual int GetTableIndexFromName(const char* name, const ID_NAME_PAIR* table, int count);

protected:
    /// Non-zero: the next record has to be a header. ProcessFile clears it and nothing here sets it, so the header is
    /// checked only where a derived class sets it before the first record, as in its ProcessMetafileRecords.
    std::int32_t m_firstRecord = 0;
};
