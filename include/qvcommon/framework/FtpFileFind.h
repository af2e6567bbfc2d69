#pragma once

/// @file Searching folders on an FTP server.

#include "qvcommon/framework/FileFind.h"

/// A connection to an FTP server. Derive from it to provide one; Connect returns the system's.
class QVCOMMON_API CFtpConnection : public CObject {
public:
    /// Starts a listing of the entries that match `pattern`, a path on the server whose last part may contain * and ?.
    /// The context is passed to the system's calls. Returns null if nothing matches or the server refuses. The search
    /// must end before the connection does.
    virtual std::unique_ptr<qv::IFileSearch> Search(const char* pattern, std::uintptr_t context) = 0;

    /// Logs in through the system's internet services, with passive transfers. Returns null on failure, and always on
    /// Linux, which has no such services. Port 0 is FTP's default. A null user is anonymous.
    static std::unique_ptr<CFtpConnection> Connect(const char* server, unsigned short port = 0,
                                                   const char* user = nullptr, const char* password = nullptr);
};

/// CFileFind over an FTP connection, which must outlive it. A server's paths use "/".
class QVCOMMON_API CFtpFileFind : public CFileFind {
public:
    /// Stores a reference to the connection; the context is passed to its Search.
    explicit CFtpFileFind(CFtpConnection* connection, std::uintptr_t context = 1)
        : m_connection(connection), m_context(context) {}

    /// The root is the part of the pattern up to its last "/".
    BOOL FindFile(const char* pattern = nullptr, DWORD options = 0) override;

private:
    CFtpConnection* m_connection;
    std::uintptr_t m_context;
};
