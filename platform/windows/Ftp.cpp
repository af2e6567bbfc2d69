#include "platform/Ftp.h"

#include "platform/windows/FindData.h"
#include "platform/windows/UniqueHandle.h"

namespace qv::platform {
namespace {

using UniqueInternet = UniqueResource<HINTERNET, sys::InternetCloseHandle>;

class WinInetSearch : public FtpSearch {
public:
    WinInetSearch(UniqueInternet search, const WIN32_FIND_DATAA& first) : m_search(std::move(search)), m_data(first) {}

    bool Next(FoundEntry& entry) override {
        if (!std::exchange(m_first, false) && !sys::InternetFindNextFileA(m_search.Get(), &m_data).ok()) return false;
        CopyFindStatus(m_data, entry);
        entry.tag = 0;
        entry.name = m_data.cFileName;
        entry.shortName = m_data.cAlternateFileName;
        return true;
    }

private:
    UniqueInternet m_search;
    WIN32_FIND_DATAA m_data;
    bool m_first = true;
};

class WinInetSession : public FtpSession {
public:
    WinInetSession(UniqueInternet internet, UniqueInternet connection)
        : m_internet(std::move(internet)), m_connection(std::move(connection)) {}

    std::unique_ptr<FtpSearch> Search(const char* pattern, std::uintptr_t context) override {
        WIN32_FIND_DATAA first;
        UniqueInternet search(
            sys::FtpFindFirstFileA(m_connection.Get(), pattern, &first, INTERNET_FLAG_RELOAD, context));
        if (!search) return nullptr;
        return std::make_unique<WinInetSearch>(std::move(search), first);
    }

private:
    UniqueInternet m_internet, m_connection;
};

}  // namespace

std::unique_ptr<FtpSession> FtpSession::Open(const char* server, unsigned short port, const char* user,
                                             const char* password) {
    if (port == 0) port = INTERNET_DEFAULT_FTP_PORT;
    UniqueInternet internet(sys::InternetOpenA("QvCommon", INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0));
    if (!internet) return nullptr;
    UniqueInternet connection(sys::InternetConnectA(internet.Get(), server, port, user, password, INTERNET_SERVICE_FTP,
                                                    INTERNET_FLAG_PASSIVE, 0));
    if (!connection) return nullptr;
    return std::make_unique<WinInetSession>(std::move(internet), std::move(connection));
}

}  // namespace qv::platform
