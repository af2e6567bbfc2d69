#pragma once

#include <string>
#include <vector>

/// @file Numbers as text, the same in every locale.
namespace qv::charts {

/// Returns the shortest digits that read back as the same number.
std::string Shortest(double value);

/// Appends a coordinate, rounded to a tenth of a pixel.
void AppendCoordinate(std::string& out, double value);
/// Appends two coordinates with a space between them.
void AppendPoint(std::string& out, double x, double y);

/// Returns the label of a tick: a multiple of `step` on an axis whose greatest absolute value is `magnitude`. All
/// labels of an axis have the same number of decimals. The minus is U+2212.
std::u32string TickText(double value, double step, double magnitude);

/// Formats a table's values with the same number of decimals, the most that any of them needs for six significant
/// digits.
std::vector<std::u32string> AlignedTexts(const std::vector<double>& values);

/// Formats a share of a whole as a percentage with one decimal.
std::u32string PercentText(double share);

/// Converts ASCII to characters, with U+2212 for "-".
std::u32string WithMinus(const std::string& number);

}  // namespace qv::charts
