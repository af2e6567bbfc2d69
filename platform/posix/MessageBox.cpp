#include "platform/MessageBox.h"

#include <cstdio>

namespace qv::platform {

int ShowMessageBox(const char* text, unsigned style) {
    enum Answer { Ok = 1, Cancel = 2, Abort = 3, No = 7 };
    std::fprintf(stderr, "%s\n", text);
    switch (style & 15) {
        case 2: return Abort;   // abort, retry, ignore
        case 3:                 // yes, no, cancel
        case 4: return No;      // yes, no
        case 5:                 // retry, cancel
        case 6: return Cancel;  // cancel, try, continue
        default: return Ok;
    }
}

}  // namespace qv::platform
