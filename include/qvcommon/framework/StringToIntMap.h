#pragma once

/// @file A map from texts to numbers.

#include "qvcommon/framework/Collections.h"

/// Walked in the byte order of its keys.
class QVCOMMON_API CMapStringToInt : public CStringMap<int, int> {};
