#include "imaging/PngFilter.h"

#include <algorithm>
#include <cstdlib>

namespace qv::imaging {
namespace {

/// The neighbour that is nearest to left + above - corner.
inline int Paeth(int left, int above, int corner) {
    const int toLeft = std::abs(above - corner), toAbove = std::abs(left - corner);
    const int toCorner = std::abs(left + above - 2 * corner);
    const int nearer = toAbove < toLeft ? above : left;
    return toCorner < std::min(toLeft, toAbove) ? corner : nearer;
}

/// Processes pixel by pixel, all bytes of a pixel together, so that the previous pixel stays in registers.
template <int Step, BYTE FilterType>
void UnfilterPixels(BYTE* row, const BYTE* above, std::size_t size) {
    int left[Step] = {}, corner[Step] = {};
    for (std::size_t i = 0; i + Step <= size; i += Step)
        for (int c = 0; c < Step; ++c) {
            const int up = above[i + c];
            const int guess = FilterType == kAverage ? (left[c] + up) / 2 : Paeth(left[c], up, corner[c]);
            left[c] = row[i + c] = static_cast<BYTE>(row[i + c] + guess);
            corner[c] = up;
        }
}

template <int Step>
void UnfilterPixels(BYTE filter, PngRows& rows) {
    if (filter == kAverage)
        UnfilterPixels<Step, kAverage>(rows.Row(), rows.Above(), rows.Size());
    else
        UnfilterPixels<Step, kPaeth>(rows.Row(), rows.Above(), rows.Size());
}

void Filter(BYTE filter, PngRows& rows, BYTE* out) {
    const BYTE *const row = rows.Row(), *const above = rows.Above(), *const left = row - rows.Step(),
                      *const corner = above - rows.Step();
    const std::size_t size = rows.Size();
    *out++ = filter;
    switch (filter) {
        case kNoFilter: std::copy_n(row, size, out); break;
        case kSub:
            for (std::size_t i = 0; i < size; ++i) out[i] = static_cast<BYTE>(row[i] - left[i]);
            break;
        case kUp:
            for (std::size_t i = 0; i < size; ++i) out[i] = static_cast<BYTE>(row[i] - above[i]);
            break;
        case kAverage:
            for (std::size_t i = 0; i < size; ++i) out[i] = static_cast<BYTE>(row[i] - (left[i] + above[i]) / 2);
            break;
        default:
            for (std::size_t i = 0; i < size; ++i)
                out[i] = static_cast<BYTE>(row[i] - Paeth(left[i], above[i], corner[i]));
    }
}

// A row is too short for the sum to overflow.
std::uint32_t Magnitude(Bytes bytes) {
    std::uint32_t sum = 0;
    for (const BYTE byte : bytes) sum += static_cast<unsigned>(std::abs(static_cast<signed char>(byte)));
    return sum;
}

}  // namespace

PngRows::PngRows(std::size_t rowBytes, int step) : m_row(kLead + rowBytes), m_above(kLead + rowBytes), m_step(step) {}

bool Unfilter(BYTE filter, PngRows& rows) {
    BYTE *const row = rows.Row(), *const left = row - rows.Step();
    const std::size_t size = rows.Size();
    switch (filter) {
        case kNoFilter: return true;
        case kSub:
            for (std::size_t i = 0; i < size; ++i) row[i] = static_cast<BYTE>(row[i] + left[i]);
            return true;
        case kUp:
            for (std::size_t i = 0; i < size; ++i) row[i] = static_cast<BYTE>(row[i] + rows.Above()[i]);
            return true;
        case kAverage:
        case kPaeth: break;
        default: return false;
    }
    switch (rows.Step()) {
        case 1: UnfilterPixels<1>(filter, rows); break;
        case 2: UnfilterPixels<2>(filter, rows); break;
        case 3: UnfilterPixels<3>(filter, rows); break;
        case 4: UnfilterPixels<4>(filter, rows); break;
        case 6: UnfilterPixels<6>(filter, rows); break;
        default: UnfilterPixels<8>(filter, rows); break;
    }
    return true;
}

Bytes PngFilterChoice::Choose(PngRows& rows) {
    std::uint32_t least = 0;
    for (const BYTE filter : {kNoFilter, kSub, kUp, kAverage, kPaeth}) {
        Filter(filter, rows, m_other.data());
        const std::uint32_t sum = Magnitude(Bytes(m_other).subspan(1));
        if (filter != kNoFilter && sum >= least) continue;
        least = sum;
        m_best.swap(m_other);
    }
    return m_best;
}

}  // namespace qv::imaging
