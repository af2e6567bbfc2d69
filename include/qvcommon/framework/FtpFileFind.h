#pragma once

/// @file Searches of folders on an FTP server.

#include "qvcommon/framework/FileFind.h"

/// A connection to an FTP server. Derive from it to bring one of your own; Connect gives the system's.
class QVCOMMON_API CFtpConnection : public CObject {
public:
    /// Begins a listing of the entries that match `pattern`, a path on the server whose last part may hold * and ?. The
    /// context is handed on to the system's own calls. Null when nothing matches or the server refuses. The search ends
    /// before the connection does.
    virtual std::unique_ptr<qv::IFileSearch> Search(const char* pattern, std::uintptr_t context) = 0;

    /// Logs in through the system's internet services, with passive transfers. Null when that fails, and always on Linux,
    /// which has no such services. Port 0 is FTP's own. A null user is anonymous.
    static std::unique_ptr<CFtpConnection> Connect(const char* server, unsigned short port = 0,
                                                   const char* user = nullptr, const char* password = nullptr);
};

/// CFileFind over such a connection, which has to outlive it. A server's paths use "/".
class QVCOMMON_API CFtpFileFind : public CFileFind {
public:
    /// Refers to the connection; the context goes to its Search.
    explicit CFtpFileFind(CFtpConnection* connection, std::uintptr_t context = 1)
        : m_connection(connection), m_context(context) {}

    /// The root is the part of the pattern up to its last "/".
    BOOL FindFile(const char* pattern = nullptr, DWORD options = 0) override;

private:
    CFtpConnection* m_connection;
    std::uintptr_t m_context;
};
