#pragma once

/// @file Filling in the marks that the script files of this folder leave open.

#include <initializer_list>

#include "qvcommon/framework/String.h"

namespace qv::html {

struct ScriptValue {
    std::string_view mark;  ///< as it stands in the script, not empty
    std::string_view value;
};

/// The script with its marks replaced. A value that holds a mark is not looked at again.
CString FillScript(std::string_view script, std::initializer_list<ScriptValue> values);

/// A path within a script string: each "\" twice. Nothing else is escaped.
CString ScriptPath(std::string_view path);

}  // namespace qv::html
