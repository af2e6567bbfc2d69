#pragma once

/// @file Names of members, in the cabinet and in the process's code page.

#include "qvcommon/framework/String.h"

namespace qv::cabinet {

/// A path whose separators are all "\".
CString WithBackslashes(const char* path);
/// Whether the name is stored in UTF-8, and marked so.
bool NeedsUtf8(const CString& name);
/// Cut to what the format holds, at a character, where the name is stored in UTF-8.
CString ToMemberName(const CString& name);
/// The way back from a name that is marked. Characters that the code page lacks become "_".
CString FromMemberName(const CString& name);

}  // namespace qv::cabinet
