#include "platform/Ftp.h"

#include <windows.h>

#include <wininet.h>

namespace qv::platform {
namespace {

/// An internet handle that is closed at the end of its scope.
struct CloseInternet {
    void operator()(void* handle) const { ::InternetCloseHandle(handle); }
};
using Internet = std::unique_ptr<void, CloseInternet>;

class WinInetSearch : public FtpSearch {
public:
    WinInetSearch(Internet search, const WIN32_FIND_DATAA& first) : m_search(std::move(search)), m_data(first) {}

    bool Next(FoundEntry& entry) override {
        if (!m_first && !::InternetFindNextFileA(m_search.get(), &m_data)) return false;
        m_first = false;
        CopyFindData(m_data, entry);
        return true;
    }

private:
    Internet m_search;
    WIN32_FIND_DATAA m_data;
    bool m_first = true;
};

class WinInetSession : public FtpSession {
public:
    WinInetSession(Internet internet, Internet connection)
        : m_internet(std::move(internet)), m_connection(std::move(connection)) {}

    std::unique_ptr<FtpSearch> Search(const char* pattern, std::uintptr_t context) override {
        WIN32_FIND_DATAA first;
        Internet search(::FtpFindFirstFileA(m_connection.get(), pattern, &first, INTERNET_FLAG_RELOAD, context));
        if (!search) return nullptr;
        return std::make_unique<WinInetSearch>(std::move(search), first);
    }

private:
    Internet m_internet, m_connection;
};

}  // namespace

std::unique_ptr<FtpSession> FtpSession::Open(const char* server, unsigned short port, const char* user,
                                             const char* password) {
    Internet internet(::InternetOpenA("QvCommon", INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0));
    if (!internet) return nullptr;
    Internet connection(::InternetConnectA(internet.get(), server, port ? port : INTERNET_DEFAULT_FTP_PORT, user,
                                           password, INTERNET_SERVICE_FTP, INTERNET_FLAG_PASSIVE, 0));
    if (!connection) return nullptr;
    return std::make_unique<WinInetSession>(std::move(internet), std::move(connection));
}

}  // namespace qv::platform
