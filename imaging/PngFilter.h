#pragma once

#include <vector>

#include "imaging/PngFormat.h"

namespace qv::imaging {

/// A row of a picture and the row above it, each preceded by zero bytes, so that every byte has neighbours.
class PngRows {
public:
    PngRows(std::size_t rowBytes, int step);

    BYTE* Row() { return m_row.data() + kLead; }
    const BYTE* Above() const { return m_above.data() + kLead; }
    std::size_t Size() const { return m_row.size() - kLead; }
    int Step() const { return m_step; }
    /// Makes the current row the one above.
    void Advance() { m_row.swap(m_above); }

private:
    static constexpr std::size_t kLead = 8;  // the widest step

    std::vector<BYTE> m_row, m_above;
    int m_step;
};

/// Reverses a filter in place. Returns false for an unknown filter.
bool Unfilter(BYTE filter, PngRows& rows);

/// Finds the filter with the least sum of absolute values of the row's bytes, taken as signed: the heuristic that the
/// standard recommends.
class PngFilterChoice {
public:
    explicit PngFilterChoice(std::size_t rowBytes) : m_best(rowBytes + 1), m_other(rowBytes + 1) {}

    /// Returns the filter's number followed by the filtered row; valid until the next call.
    Bytes Choose(PngRows& rows);

private:
    std::vector<BYTE> m_best, m_other;
};

}  // namespace qv::imaging
