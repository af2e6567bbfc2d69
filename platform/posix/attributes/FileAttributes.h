#pragma once

namespace qv::platform {

/// Gives a file the mode, owner, group, access lists and extended attributes of another one, as far as the user may.
void CopyAttributes(int from, int to);

}  // namespace qv::platform
