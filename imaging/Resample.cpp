#include "imaging/Resample.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <numbers>
#include <span>

#include "imaging/Geometry.h"

namespace qv::imaging {
namespace {

// One pixel in linear arithmetic: blue, green and red, premultiplied by alpha, and alpha. Sums are always taken in the
// same order, so the result is the same on every system.
struct Sum {
    float channels[4];
};

void Add(Sum& sum, const Sum& value, float weight) {
    for (int i = 0; i < 4; ++i) sum.channels[i] += weight * value.channels[i];
}

constexpr double kLobes = 3;

double Lanczos(double x) {
    if (x == 0) return 1;
    if (std::abs(x) >= kLobes) return 0;
    const double angle = std::numbers::pi * x;
    return kLobes * SinPi(x) * SinPi(x / kLobes) / (angle * angle);
}

// For each pixel of the result along one axis: the source pixels that contribute to it, and their weights, whose sum is
// 1.
class Taps {
public:
    Taps(int from, int to, CImageHelper::Filter filter) {
        for (int i = 0; i < to; ++i) filter == CImageHelper::box ? AddArea(i, from, to) : AddLobes(i, from, to);
    }

    int Count() const { return static_cast<int>(m_places.size()); }
    int First(int i) const { return m_places[static_cast<std::size_t>(i)].first; }
    std::span<const float> Weights(int i) const {
        const Place& place = m_places[static_cast<std::size_t>(i)];
        return {m_weights.data() + place.weights, place.count};
    }

private:
    struct Place {
        int first;
        std::size_t weights, count;
    };

    void AddArea(std::int64_t i, std::int64_t from, std::int64_t to) {
        // In units in which a source pixel has length `to`, and a result pixel has length `from`.
        const std::int64_t begin = i * from, end = begin + from, first = begin / to;
        Begin(first);
        for (std::int64_t j = first; j * to < end; ++j) {
            const std::int64_t share = std::min(end, (j + 1) * to) - std::max(begin, j * to);
            m_weights.push_back(static_cast<float>(static_cast<double>(share) / static_cast<double>(from)));
        }
        End();
    }

    void AddLobes(int i, int from, int to) {
        const double scale = static_cast<double>(from) / to, width = std::max(scale, 1.0), centre = (i + 0.5) * scale;
        const int first = std::max(0, static_cast<int>(std::floor(centre - kLobes * width)));
        const int last = std::min(from, static_cast<int>(std::ceil(centre + kLobes * width)));
        double sum = 0;
        m_shares.clear();
        for (int j = first; j < last; ++j) sum += m_shares.emplace_back(Lanczos((j + 0.5 - centre) / width));
        Begin(first);
        for (const double share : m_shares) m_weights.push_back(static_cast<float>(share / sum));
        End();
    }

    void Begin(std::int64_t first) { m_places.push_back({static_cast<int>(first), m_weights.size(), 0}); }
    void End() { m_places.back().count = m_weights.size() - m_places.back().weights; }

    std::vector<Place> m_places;
    std::vector<float> m_weights;
    std::vector<double> m_shares;  // of one pixel, before normalization
};

using Row = std::vector<Sum>;

class Scaler {
public:
    Scaler(const Raster& source, Raster& result, CImageHelper::Filter filter)
        : m_source(source),
          m_result(result),
          m_opaque(source.IsOpaque()),
          m_columns(source.Width(), result.Width(), filter),
          m_rows(source.Height(), result.Height(), filter),
          m_read(static_cast<std::size_t>(source.Width())),
          m_narrow(static_cast<std::size_t>(result.Width())) {}

    // Each source row is scaled horizontally once and added to the result rows to which it contributes.
    void Run() {
        for (int y = 0; y < m_source.Height(); ++y) {
            while (m_next < m_rows.Count() && m_rows.First(m_next) <= y) Open();
            if (m_open.empty()) continue;
            ReadRow(y);
            ScaleAcross();
            const int oldest = m_next - static_cast<int>(m_open.size());
            for (int i = oldest; i < m_next; ++i) AddRow(i, y, m_open[static_cast<std::size_t>(i - oldest)]);
            for (int i = oldest; !m_open.empty() && IsComplete(i, y); ++i) Close(i);
        }
    }

private:
    void Open() {
        Row row = m_spare.empty() ? Row() : std::move(m_spare.back());
        if (!m_spare.empty()) m_spare.pop_back();
        row.assign(m_narrow.size(), Sum{});
        m_open.push_back(std::move(row));
        ++m_next;
    }

    bool IsComplete(int i, int y) const {
        return y + 1 >= m_rows.First(i) + static_cast<int>(m_rows.Weights(i).size());
    }

    void AddRow(int i, int y, Row& row) const {
        const auto weights = m_rows.Weights(i);
        const auto at = static_cast<std::size_t>(y - m_rows.First(i));
        if (at >= weights.size()) return;
        const float weight = weights[at];
        for (std::size_t x = 0; x < row.size(); ++x) Add(row[x], m_narrow[x], weight);
    }

    void ReadRow(int y) {
        const Pixel* pixel = m_source.Row(y);
        for (Sum& sum : m_read) {
            const float alpha = m_opaque ? 1.0F : static_cast<float>(AlphaOf(*pixel)) / 255;
            for (int i = 0; i < 3; ++i) sum.channels[i] = static_cast<float>(ChannelOf(*pixel, i)) * alpha;
            sum.channels[3] = static_cast<float>(AlphaOf(*pixel++));
        }
    }

    void ScaleAcross() {
        for (int x = 0; x < m_columns.Count(); ++x) {
            Sum sum = {};
            const Sum* value = &m_read[static_cast<std::size_t>(m_columns.First(x))];
            for (const float weight : m_columns.Weights(x)) Add(sum, *value++, weight);
            m_narrow[static_cast<std::size_t>(x)] = sum;
        }
    }

    void Close(int i) {
        Row& row = m_open.front();
        Pixel* out = m_result.Row(i);
        for (const Sum& sum : row) *out++ = m_opaque ? Packed(sum, 1) | kOpaque : Unmultiplied(sum);
        m_spare.push_back(std::move(row));
        m_open.pop_front();
    }

    static Pixel Unmultiplied(const Sum& sum) {
        const Pixel alpha = Rounded(sum.channels[3]);
        return alpha == 0 ? 0 : Packed(sum, 255 / std::min(sum.channels[3], 255.0F)) | alpha << 24;
    }

    static Pixel Packed(const Sum& sum, float factor) {
        return Rounded(sum.channels[0] * factor) | Rounded(sum.channels[1] * factor) << 8 |
               Rounded(sum.channels[2] * factor) << 16;
    }

    static Pixel Rounded(float value) {
        const float raised = std::clamp(value, 0.0F, 255.0F) + 0.5F;
        return static_cast<Pixel>(raised);
    }

    const Raster& m_source;
    Raster& m_result;
    bool m_opaque;
    Taps m_columns, m_rows;
    Row m_read, m_narrow;
    std::deque<Row> m_open;  // result rows under construction; the last one is m_next - 1
    std::vector<Row> m_spare;
    int m_next = 0;
};

}  // namespace

Raster Scaled(const Raster& source, int width, int height, CImageHelper::Filter filter) {
    Raster result(width, height);
    Scaler(source, result, filter).Run();
    return result;
}

}  // namespace qv::imaging
