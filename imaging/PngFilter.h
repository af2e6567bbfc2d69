#pragma once

#include <vector>

#include "imaging/PngFormat.h"

namespace qv::imaging {

/// A row of a picture with the row above it, and zero bytes before both, so that every byte has neighbours.
class PngRows {
public:
    PngRows(std::size_t rowBytes, int step);

    BYTE* Row() { return m_row.data() + kLead; }
    const BYTE* Above() const { return m_above.data() + kLead; }
    std::size_t Size() const { return m_row.size() - kLead; }
    int Step() const { return m_step; }
    /// The row becomes the one above.
    void Advance() { m_row.swap(m_above); }

private:
    static constexpr std::size_t kLead = 8;  // the widest step

    std::vector<BYTE> m_row, m_above;
    int m_step;
};

/// Turns what a filter has made back into the row. False for an unknown filter.
bool Unfilter(BYTE filter, PngRows& rows);

/// Finds the filter of a row whose bytes, taken as signed, have the least sum of magnitudes: a rule of thumb that the
/// standard recommends.
class PngFilterChoice {
public:
    explicit PngFilterChoice(std::size_t rowBytes) : m_best(rowBytes + 1), m_other(rowBytes + 1) {}

    /// The filter's number and the filtered row; valid until the next call.
    Bytes Choose(PngRows& rows);

private:
    std::vector<BYTE> m_best, m_other;
};

}  // namespace qv::imaging
