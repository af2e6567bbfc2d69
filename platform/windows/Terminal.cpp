#include "platform/Terminal.h"

#include <io.h>

#include <cstdio>

namespace qv::platform {

bool IsErrorTerminal() {
    return ::_isatty(::_fileno(stderr)) != 0;
}

}  // namespace qv::platform
