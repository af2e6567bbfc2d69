#pragma once

/// @file The system's FTP client. Not available on Linux: every call fails there.

#include <cstdint>
#include <memory>
#include <string>

#include "platform/FileSearch.h"

namespace qv::platform {

class FtpSearch {
public:
    virtual ~FtpSearch() = default;
    /// Returns false after the last entry.
    virtual bool Next(FoundEntry& entry) = 0;
};

class FtpSession {
public:
    virtual ~FtpSession() = default;
    /// Returns null if nothing matches or the server refuses. One search at a time; it must end before the session.
    virtual std::unique_ptr<FtpSearch> Search(const char* pattern, std::uintptr_t context) = 0;

    /// Returns null if the server cannot be reached or refuses. Port 0 is FTP's default, a null user is anonymous.
    static std::unique_ptr<FtpSession> Open(const char* server, unsigned short port, const char* user,
                                            const char* password);
};

}  // namespace qv::platform
