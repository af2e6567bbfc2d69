#pragma once

/// @file The text forms of typed values, the same on every system and in every locale. Reading gives nullopt for a text that
/// is no such value as a whole; blanks around it do not count.

#include <cstdint>
#include <optional>

#include "qvcommon/framework/Collections.h"
#include "qvcommon/framework/DateTime.h"

namespace qv {

/// Decimal digits with an optional sign.
std::optional<int> ReadIntegerText(std::string_view text);
std::optional<DWORD> ReadUnsignedText(std::string_view text);

/// The shortest digits that come back as the same number, with a point for the decimals.
CString DoubleText(double value);
std::optional<double> ReadDoubleText(std::string_view text);

/// "true" and "false"; also read are yes and no, on and off, 1 and 0, in any case.
CString BoolText(BOOL value);
std::optional<BOOL> ReadBoolText(std::string_view text);

/// "2004-05-05 14:03:07"; read is whatever COleDateTime::ParseDateTime reads. The date must be valid.
CString DateText(const COleDateTime& value);
std::optional<COleDateTime> ReadDateText(std::string_view text);

/// A record of comma-separated values; the empty text for the empty list. Every text is a list.
CString ListText(const CStringArray& values);
CStringArray ReadListText(std::string_view text);

/// Two hexadecimal digits a byte.
CString BytesText(std::string_view bytes);
std::optional<CString> ReadBytesText(std::string_view text);

}  // namespace qv
