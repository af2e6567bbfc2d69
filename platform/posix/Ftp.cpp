#include "platform/Ftp.h"

namespace qv::platform {

std::unique_ptr<FtpSession> FtpSession::Open(const char*, unsigned short, const char*, const char*) {
    return nullptr;
}

}  // namespace qv::platform
