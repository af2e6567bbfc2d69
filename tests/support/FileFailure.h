#pragma once

#include <utility>

#include "qvcommon/framework/File.h"
#include "tests/support/Raised.h"

/// The cause of a CFileException and the file that it names.
using FileFailure = std::pair<int, CString>;

/// The failure that the action raises; CFileException::none and no name when it raises none.
template <class Action>
FileFailure FileFailureOf(Action action) {
    const auto error = Raised<CFileException>(action);
    return error ? FileFailure(error->m_cause, error->m_strFileName) : FileFailure(CFileException::none, {});
}
