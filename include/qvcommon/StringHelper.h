#pragma once

/// @file The text toolbox. All members are static and free of state, safe from any thread as long as no thread changes the
/// C locale meanwhile.
///
/// Lengths are byte counts, positions byte indexes from 0, and -1 means "not found". A `caseSensitive` flag that is zero
/// lets texts match that differ in case only; a `noCase` flag that is NOT zero does the same. Text arguments may hold zero
/// bytes. Memory running out raises std::bad_alloc; nothing else is raised but where a member says so.

#include "qvcommon/framework/Collections.h"

class QVCOMMON_API CStringHelper {
public:
    CStringHelper() = default;
    virtual ~CStringHelper() = default;

    // Comparing and searching (core/StringHelperCompare.cpp)

    // Case and white space (core/StringHelperCase.cpp)

    // Lists of texts (core/StringHelperLists.cpp)

    // Sorting (core/StringHelperSort.cpp)

    // Numbers as text (core/StringHelperNumbers.cpp)

    // The user's locale, version resources, errors, identifiers, clipboard (core/StringHelperSystem.cpp)

    // Cutting at markers (core/StringHelperMarkers.cpp)

    // Finding and replacing (core/StringHelperReplace.cpp)

    // Addresses and forms (core/StringHelperUrl.cpp)
};
