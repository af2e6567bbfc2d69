#pragma once

/// @file Numbers and dates in the XML formats: the same in every locale and on every system.

#include <string>
#include <string_view>

#include "qvcommon/framework/DateTime.h"

namespace qv {

/// Returns the value of the leading digits, after optional white space and sign; 0 without digits, the nearest int on
/// overflow.
int ReadInteger(std::string_view text);
/// The same with a fraction and an exponent; the decimal separator is a point.
double ReadDouble(std::string_view text);
/// Returns whether the text equals "true", ignoring case.
bool ReadBool(std::string_view text);

/// Like "%g" and "%f" in the C locale.
std::string WriteShort(double value);
std::string WriteFixed(double value);

/// Returns "05 May 2004 14:03", with ":07" appended if `seconds` is set.
std::string WriteDate(const COleDateTime& date, bool seconds);

}  // namespace qv
