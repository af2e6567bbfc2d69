#pragma once

/// What tests of files and folders share.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Path.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"
#include "tests/support/Raised.h"
#include "tests/support/SystemFaults.h"
#include "tests/support/TempFolder.h"

namespace fs = std::filesystem;
using qv::platform::CallKind;
using qv::platform::FileCause;
