#include "platform/MessageBox.h"

#include "platform/windows/System.h"
#include "platform/windows/names/WidePath.h"

namespace qv::platform {

int ShowMessageBox(const char* text, unsigned style) {
    return sys::MessageBoxW(::GetActiveWindow(), ToSystem(text).c_str(), nullptr, style | MB_TASKMODAL).value();
}

}  // namespace qv::platform
