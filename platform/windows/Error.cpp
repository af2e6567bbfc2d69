#include "platform/Error.h"

#include "platform/windows/System.h"

namespace qv::platform {

unsigned long LastError() {
    return ::GetLastError();
}

void SetLastError(unsigned long error) {
    ::SetLastError(error);
}

std::string ErrorMessage(unsigned long error) {
    char* text = nullptr;
    const DWORD flags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    const DWORD language = MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT);
    const auto length =
        sys::FormatMessageA(flags, nullptr, error, language, reinterpret_cast<char*>(&text), 0, nullptr);
    std::string message(text ? text : "", length.value());
    ::LocalFree(text);
    return message;
}

}  // namespace qv::platform
