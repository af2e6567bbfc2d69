#include "platform/Error.h"

#include "platform/windows/System.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {

unsigned long LastError() {
    return ::GetLastError();
}

void SetLastError(unsigned long error) {
    ::SetLastError(error);
}

std::string ErrorMessage(unsigned long error) {
    wchar_t* text = nullptr;
    const DWORD flags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    const DWORD language = MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT);
    const auto length =
        sys::FormatMessageW(flags, nullptr, error, language, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    std::string message = text ? FromSystem({text, length.value()}) : std::string();
    ::LocalFree(text);
    return message;
}

}  // namespace qv::platform
