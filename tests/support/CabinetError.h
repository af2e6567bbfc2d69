#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "qvcommon/Exceptions.h"
#include "tests/support/Raised.h"

/// The number of the cabinet error that an action raises; 0 when it raises none.
inline int CabinetError(const std::function<void()>& action) {
    const auto error = Raised<CVorbexException>(action);
    if (!error) return 0;
    EXPECT_EQ(error->GetSeverity(), 16);
    EXPECT_FALSE(error->GetText().IsEmpty());
    return static_cast<int>(error->GetCode());
}
