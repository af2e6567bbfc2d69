#include "platform/MessageBox.h"

#include <string>

#include "platform/Process.h"
#include "platform/posix/System.h"

namespace qv::platform {

int ShowMessageBox(const char* text, unsigned style) {
    enum Answer { Ok = 1, Cancel = 2, Abort = 3, No = 7 };
    const std::string line = std::string(text) + '\n';
    // There is no other place to report that standard error is closed, or a pipe without a reader.
    WriteToPipe(STDERR_FILENO, line.data(), line.size()).IgnoreError();
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
