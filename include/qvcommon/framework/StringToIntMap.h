#pragma once

/// @file A map from strings to numbers.

#include "qvcommon/framework/Collections.h"

/// Iterated in the byte order of its keys.
class QVCOMMON_API CMapStringToInt : public CStringMap<int, int> {};
