#include "platform/MessageBox.h"

#include <windows.h>

namespace qv::platform {

int ShowMessageBox(const char* text, unsigned style) {
    return ::MessageBoxA(::GetActiveWindow(), text, nullptr, style | MB_TASKMODAL);
}

}  // namespace qv::platform
