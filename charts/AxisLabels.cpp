#include "charts/AxisLabels.h"

#include <algorithm>
#include <cmath>

#include "charts/DateTicks.h"

namespace qv::charts {
namespace {

constexpr double kFirstLine = 19, kLine = 15, kSpace = 8;
constexpr double kLeastWrapped = 44, kLeastUpright = 15, kShortName = 44;

/// A line of labels, added from left to right. Each is moved inside the room, and refused if it overlaps the previous
/// one.
class Line {
public:
    Line(const LabelRoom& room, double y) : m_room(room), m_y(y), m_end(room.leftEnd - kSpace) {}

    bool Add(Label label, double x, std::vector<PlacedLabel>& labels) {
        label.ShortenTo(m_room.rightEnd - m_room.leftEnd);
        const double half = label.Width() / 2;
        x = std::clamp(x, m_room.leftEnd + half, std::max(m_room.leftEnd + half, m_room.rightEnd - half));
        if (x - half < m_end + kSpace - 1e-6) return false;
        m_end = x + half;
        labels.push_back({std::move(label), x, m_y});
        return true;
    }

private:
    const LabelRoom& m_room;
    double m_y, m_end;
};

// Places the ticks and their labels if all of these fit. Context labels that do not fit are omitted.
bool PlaceTicks(const std::vector<Tick>& ticks, const Scale& scale, const LabelRoom& room, AxisLabels& placed) {
    placed = {};
    Line texts(room, kFirstLine), contexts(room, kFirstLine + kLine);
    bool hasContext = false;
    for (const Tick& tick : ticks) {
        const double x = scale.At(tick.value);
        placed.ticks.push_back(x);
        if (!texts.Add(Label(tick.text, kTickSize), x, placed.labels)) return false;
        if (!tick.context.empty()) hasContext |= contexts.Add(Label(tick.context, kTickSize), x, placed.labels);
    }
    placed.height = kFirstLine + (hasContext ? kLine : 0) + 4;
    return true;
}

template <class TicksOf>
AxisLabels MostTicks(const Range& range, bool logarithmic, const LabelRoom& room, TicksOf ticksOf) {
    const Scale scale(range, logarithmic, room.left, room.right);
    AxisLabels placed;
    for (int most = std::max(1, static_cast<int>((room.right - room.left) / 40)); most > 0; most -= 1 + most / 10)
        if (PlaceTicks(ticksOf(most), scale, room, placed)) return placed;
    placed = {};
    placed.height = kFirstLine + 4;
    return placed;
}

class Names {
public:
    Names(const std::vector<CString>& names, const LabelRoom& room)
        : m_room(room), m_part((room.right - room.left) / static_cast<double>(names.size())) {
        for (const CString& name : names) {
            m_labels.emplace_back(name, kTickSize);
            m_widest = std::max(m_widest, m_labels.back().Width());
        }
    }

    AxisLabels Place() {
        if (m_widest + kSpace <= m_part) return InLines(1, 1);
        if (m_part >= kLeastWrapped && std::ranges::all_of(m_labels, [this](const Label& l) { return Wraps(l); }))
            return InLines(2, 1);
        if (m_widest <= kShortName || m_part < kLeastUpright)
            return InLines(1, static_cast<std::size_t>(std::ceil((std::min(m_widest, 120.0) + kSpace) / m_part)));
        return Upright();
    }

private:
    double At(std::size_t i) const { return m_room.left + (static_cast<double>(i) + 0.5) * m_part; }

    // Whether the label fits into two lines without cutting a word.
    bool Wraps(Label label) const {
        const std::size_t blank = label.Text().find(U' ');
        if (blank == label.Text().npos) return label.Width() + kSpace <= m_part;
        const Label first = label.TakeLine(m_part - kSpace);
        return first.Text().size() >= blank && label.Width() + kSpace <= m_part;
    }

    AxisLabels InLines(std::size_t lines, std::size_t stride) {
        AxisLabels placed;
        Line first(m_room, kFirstLine), second(m_room, kFirstLine + kLine);
        for (std::size_t i = 0; i < m_labels.size(); i += stride) {
            Label rest = m_labels[i];
            Label line = rest;
            if (lines > 1) line = rest.TakeLine(m_part - kSpace);
            line.ShortenTo(m_part * static_cast<double>(stride) - kSpace);
            first.Add(line, At(i), placed.labels);
            if (lines > 1 && !rest.Text().empty()) second.Add(rest, At(i), placed.labels);
        }
        placed.height = kFirstLine + static_cast<double>(lines - 1) * kLine + 4;
        return placed;
    }

    AxisLabels Upright() {
        AxisLabels placed;
        const double length = std::min(m_widest, m_room.height);
        for (std::size_t i = 0; i < m_labels.size(); ++i) {
            m_labels[i].ShortenTo(length);
            placed.labels.push_back({m_labels[i], At(i) + kTickSize * 0.36, 8, Anchor::End, true});
        }
        placed.height = length + 12;
        return placed;
    }

    const LabelRoom& m_room;
    double m_part, m_widest = 0;
    std::vector<Label> m_labels;
};

}  // namespace

AxisLabels CategoryLabels(const std::vector<CString>& names, const LabelRoom& room) {
    return Names(names, room).Place();
}

AxisLabels NumberLabels(const Range& range, bool logarithmic, const LabelRoom& room) {
    return MostTicks(range, logarithmic, room, [&](int most) { return NumberTicks(range, most, logarithmic); });
}

AxisLabels DateLabels(const Range& range, const LabelRoom& room) {
    return MostTicks(range, false, room, [&](int most) { return DateTicks(range, most); });
}

}  // namespace qv::charts
