#pragma once

/// @file Numbers and dates as the XML formats write and read them: the same in every locale and on every system.

#include <string>
#include <string_view>

#include "qvcommon/framework/DateTime.h"

namespace qv {

/// The digits that the text starts with, after white space and a sign; 0 when there are none, the nearest number when they
/// are too many.
int ReadInteger(std::string_view text);
/// The same with fractions and exponents, a point before the decimals.
double ReadDouble(std::string_view text);
/// Equal to "true", whatever the case.
bool ReadBool(std::string_view text);

/// As "%g" and "%f" in the C locale.
std::string WriteShort(double value);
std::string WriteFixed(double value);

/// "05 May 2004 14:03", and ":07" for the seconds.
std::string WriteDate(const COleDateTime& date, bool seconds);

}  // namespace qv
