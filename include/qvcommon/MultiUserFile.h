#pragma once

/// @file Files that are opened by several users one after another.

#include "qvcommon/framework/File.h"

/// A file whose Open waits and retries while the share mode of another opener conflicts.
class QVCOMMON_API CMultiUserFile : public CFile {
public:
    CMultiUserFile() = default;
    /// Takes ownership of an open system handle.
    explicit CMultiUserFile(Handle handle) : CFile(handle) {}
    /// Opens at once, without retrying. @throws CFileException*
    CMultiUserFile(const char* fileName, UINT openFlags) : CFile(fileName, openFlags) {}

    /// CFile::Open, retried after each sharing violation: at most 11 tries, with Wait in between. Any other failure is
    /// final.
    /// @return non-zero on success; on 0, `*error`, if given, is the failure of the last try. Never raises.
    BOOL Open(const char* fileName, UINT openFlags, CFileException* error = nullptr) override;

    /// Does the same for any file object, through its own Open: at most 9 tries, with pauses of 500, 750, 1125, 1687,
    /// 2530, 3795, 5692 and 8538 ms in between.
    static BOOL Open(CFile& file, const char* fileName, UINT openFlags, CFileException* error = nullptr);

protected:
    /// Pauses between two tries of the object's own Open: 500 ms.
    virtual void Wait();

    std::int32_t m_retryCount = 10;  ///< maximum number of retries of the object's own Open
};
