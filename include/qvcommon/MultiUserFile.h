#pragma once

/// @file Files that several users open in turn.

#include "qvcommon/framework/File.h"

/// A file whose Open waits and tries again while another opener's share mode is in the way.
class QVCOMMON_API CMultiUserFile : public CFile {
public:
    CMultiUserFile() = default;
    /// Takes over an open system handle.
    explicit CMultiUserFile(Handle handle) : CFile(handle) {}
    /// Opens at once, without trying again. @throws CFileException*
    CMultiUserFile(const char* fileName, UINT openFlags) : CFile(fileName, openFlags) {}

    /// CFile::Open, tried again after each sharing violation: at most 11 times, with Wait in between. Any other failure is
    /// final.
    /// @return non-zero on success; after 0, `*error`, if given, tells why the last try failed. Never raises.
    BOOL Open(const char* fileName, UINT openFlags, CFileException* error = nullptr) override;

    /// The same for any file object, through its own Open: at most 9 times, with pauses of 500, 750, 1125, 1687, 2530,
    /// 3795, 5692 and 8538 ms in between.
    static BOOL Open(CFile& file, const char* fileName, UINT openFlags, CFileException* error = nullptr);

protected:
    /// The pause between two tries of the object's own Open: 500 ms.
    virtual void Wait();

    std::int32_t m_retryCount = 10;  ///< how often the object's own Open tries again
};
