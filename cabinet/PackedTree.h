#pragma once

/// @file The content of a folder that goes into an archive.

#include "qvcommon/framework/Collections.h"
#include "qvcommon/framework/LeftOut.h"

namespace qv::cabinet {

struct PackedTree {
    CStringArray entries;  ///< the manifest's, files and folders
    CStringArray files;    ///< the paths of its files, in the same order
};

/// Returns the tree in the finder's order. Devices are omitted, and links to folders become empty folders. With an
/// observer, files that cannot be opened are also omitted; without one, they are included.
PackedTree ListTree(const char* folder, int recurse, ILeftOut* leftOut);

}  // namespace qv::cabinet
