#pragma once

/// @file What of a folder goes into an archive.

#include "qvcommon/framework/Collections.h"
#include "qvcommon/framework/LeftOut.h"

namespace qv::cabinet {

struct PackedTree {
    CStringArray entries;  ///< the manifest's, files and folders
    CStringArray files;    ///< the paths of the files among them, in the same order
};

/// The tree in the order of the finder. Devices are left out, and links to folders are empty folders. With an observer, so is
/// every file that cannot be opened; without one, such a file is among the others.
PackedTree ListTree(const char* folder, int recurse, ILeftOut* leftOut);

}  // namespace qv::cabinet
