#pragma once

#include <string>
#include <vector>

/// @file Numbers as text, the same in every locale.
namespace qv::charts {

/// The shortest digits that give the number back.
std::string Shortest(double value);

/// Appends a coordinate, to a tenth of a pixel.
void AppendCoordinate(std::string& out, double value);

/// The label of a tick: a multiple of `step` on an axis whose greatest absolute value is `magnitude`. Labels of one axis
/// have equal decimals. The minus is U+2212.
std::u32string TickText(double value, double step, double magnitude);

/// Values of a table, all with as many decimals as the one that needs most of them, which are those of its first six digits.
std::vector<std::u32string> AlignedTexts(const std::vector<double>& values);

/// Share of a whole as a percentage with one decimal.
std::u32string PercentText(double share);

/// ASCII as characters, with U+2212 for "-".
std::u32string WithMinus(const std::string& number);

}  // namespace qv::charts
