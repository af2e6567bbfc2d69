#include "platform/Terminal.h"

#include <unistd.h>

namespace qv::platform {

bool IsErrorTerminal() {
    return ::isatty(STDERR_FILENO) == 1;
}

}  // namespace qv::platform
