#pragma once

/// @file The text forms of typed values, the same on every system and in every locale. Reading ignores surrounding
/// white space and returns nullopt if the rest of the text is not such a value.

#include <cstdint>
#include <optional>

#include "qvcommon/framework/Collections.h"
#include "qvcommon/framework/DateTime.h"

namespace qv {

/// Decimal digits with an optional sign.
std::optional<int> ReadIntegerText(std::string_view text);
std::optional<DWORD> ReadUnsignedText(std::string_view text);

/// The shortest digits that read back as the same number, with a point as the decimal separator.
CString DoubleText(double value);
std::optional<double> ReadDoubleText(std::string_view text);

/// Writes "true" and "false"; also reads yes and no, on and off, 1 and 0, case-insensitively.
CString BoolText(BOOL value);
std::optional<BOOL> ReadBoolText(std::string_view text);

/// Writes "2004-05-05 14:03:07"; reads what COleDateTime::ParseDateTime reads. The date must be valid.
CString DateText(const COleDateTime& value);
std::optional<COleDateTime> ReadDateText(std::string_view text);

/// A record of comma-separated values; the empty text is the empty list. Every text is a valid list.
CString ListText(const CStringArray& values);
CStringArray ReadListText(std::string_view text);

/// Two hexadecimal digits per byte.
CString BytesText(std::string_view bytes);
std::optional<CString> ReadBytesText(std::string_view text);

}  // namespace qv
