#include "platform/MessageBox.h"

#include "platform/windows/System.h"

namespace qv::platform {

int ShowMessageBox(const char* text, unsigned style) {
    return sys::MessageBoxA(::GetActiveWindow(), text, nullptr, style | MB_TASKMODAL).value();
}

}  // namespace qv::platform
