#include "platform/Error.h"

#include <cerrno>
#include <cstring>

namespace qv::platform {

unsigned long LastError() {
    return static_cast<unsigned long>(errno);
}

void SetLastError(unsigned long error) {
    errno = static_cast<int>(error);
}

std::string ErrorMessage(unsigned long error) {
    const int number = static_cast<int>(error);
    if (number < 0 || !::strerrordesc_np(number)) return {};
    char text[256];
    return ::strerror_r(number, text, sizeof text);
}

}  // namespace qv::platform
