#pragma once

/// @file Filling in the placeholders of this folder's script files.

#include <initializer_list>

#include "qvcommon/framework/String.h"

namespace qv::html {

struct ScriptValue {
    std::string_view mark;  ///< as written in the script, not empty
    std::string_view value;
};

/// Returns the script with its placeholders replaced. Values are not searched for placeholders.
CString FillScript(std::string_view script, std::initializer_list<ScriptValue> values);

/// Returns a path for a script string: each "\" is doubled. Nothing else is escaped.
CString ScriptPath(std::string_view path);

}  // namespace qv::html
