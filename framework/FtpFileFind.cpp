#include "qvcommon/framework/FtpFileFind.h"

#include "framework/FindRecord.h"
#include "platform/Ftp.h"

namespace {

class SystemSearch : public qv::IFileSearch {
public:
    explicit SystemSearch(std::unique_ptr<qv::platform::FtpSearch> search) : m_search(std::move(search)) {}

    bool Next(QvFindData& entry) override {
        if (!m_search->Next(m_entry)) return false;
        qv::CopyRecord(m_entry, entry);
        return true;
    }

private:
    std::unique_ptr<qv::platform::FtpSearch> m_search;
    qv::platform::FoundEntry m_entry;
};

class SystemConnection : public CFtpConnection {
public:
    explicit SystemConnection(std::unique_ptr<qv::platform::FtpSession> session) : m_session(std::move(session)) {}

    std::unique_ptr<qv::IFileSearch> Search(const char* pattern, std::uintptr_t context) override {
        auto search = m_session->Search(pattern, context);
        if (!search) return nullptr;
        return std::make_unique<SystemSearch>(std::move(search));
    }

private:
    std::unique_ptr<qv::platform::FtpSession> m_session;
};

}  // namespace

std::unique_ptr<CFtpConnection> CFtpConnection::Connect(const char* server, unsigned short port, const char* user,
                                                        const char* password) {
    auto session = qv::platform::FtpSession::Open(server, port, user, password);
    if (!session) return nullptr;
    return std::make_unique<SystemConnection>(std::move(session));
}

BOOL CFtpFileFind::FindFile(const char* pattern, DWORD) {
    Close();
    const CString wanted = pattern ? pattern : "*";
    return Begin(m_connection->Search(wanted, m_context), wanted.Left(wanted.ReverseFind('/') + 1));
}
