#include "tests/support/SampleCharts.h"

#include <cmath>
#include <limits>
#include <random>

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

class Samples {
public:
    Samples(int width, int height) : m_width(width), m_height(height) {}

    template <class GRAPH>
    void Add(const char* name, GRAPH graph) {
        graph.SetSize(m_width, m_height);
        m_charts.push_back({name, graph.GetSvg()});
    }
    std::vector<SampleChart> Take() { return std::move(m_charts); }

private:
    int m_width, m_height;
    std::vector<SampleChart> m_charts;
};

CBarGraph Bars(bool stacked) {
    CBarGraph bars;
    bars.SetTitle("Electricity by source");
    bars.SetAxisTitles("Year", "Terawatt hours");
    bars.SetStacked(stacked);
    bars.SetCategories({"2019", "2020", "2021", "2022", "2023", "2024"});
    bars.AddSeries("Wind", {126, 132, 114, 125, 142, 139});
    bars.AddSeries("Sun", {45, 49, 49, 60, 64, 74});
    bars.AddSeries("Gas & oil", {90, 95, 90, kNone, 76, 79});
    bars.AddSeries("Trade balance", {-33, -19, -19, -27, 9, 28});
    return bars;
}

CBarGraph LongNames() {
    CBarGraph bars;
    bars.SetTitle(
        "A title that is far too long for one line, and so goes on in another one until even that has no room");
    bars.SetCategories({"United Kingdom of Great Britain and Northern Ireland", "Bosnia and Herzegovina",
                        "Saint Vincent and the Grenadines", "<script>harm()</script>", "\"><svg onload=harm()>",
                        "Donaudampfschifffahrtsgesellschaftskapitaen", "C\xC3\xB4te d'Ivoire",
                        "\xE6\x97\xA5\xE6\x9C\xAC", "WWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWW", "", "\xE2\x80\xAEtxet",
                        "ok"});
    bars.AddSeries("Only", {12, 9, 8.5, 7, 6, 5, 4.5, 4, 3, 2, 1, 0.5});
    return bars;
}

CBarGraph ManySeries() {
    CBarGraph bars;
    bars.SetTitle("Many series");
    bars.SetLogarithmic(true);
    for (int i = 0; i < 30; ++i)
        bars.AddSeries("Series with number " + std::to_string(i), {std::pow(10.0, i % 7), 3.0 + i, 0, -1});
    return bars;
}

CPieGraph Pie() {
    CPieGraph pie;
    pie.SetTitle("Households by size");
    CStringArray names{"One person", "Two persons", "Three persons", "Four persons", "Five persons and more"};
    std::vector<double> values{17.0, 13.9, 4.9, 3.8, 1.4};
    for (int i = 0; i < 12; ++i) {
        names.Add("Institution of kind " + CString(std::to_string(i)));
        values.push_back(0.05 + 0.01 * i);
    }
    pie.SetCategories(names);
    pie.AddSeries("Million", values);
    return pie;
}

CAreaGraph Area(bool stacked) {
    CAreaGraph area;
    area.SetTitle("Visitors by month");
    area.SetAxisTitles("", "Thousands");
    area.SetStacked(stacked);
    std::vector<COleDateTime> dates;
    std::vector<double> here, there;
    for (int month = 0; month < 30; ++month) {
        dates.emplace_back(2023 + month / 12, month % 12 + 1, 1, 0, 0, 0);
        here.push_back(month > 10 && month < 14 ? kNone : 40 + 20 * std::sin(month / 2.0));
        there.push_back(month == 5 ? kNone : 25 + month);
    }
    area.AddSeries("Museum", dates, here);
    area.AddSeries("Library", dates, there);
    return area;
}

CAreaGraph Million() {
    CAreaGraph area;
    area.SetTitle("A million measurements");
    area.SetAxisTitles("Measurement", "Voltage");
    std::mt19937 random(1);
    std::vector<double> values;
    for (int i = 0; i < 1000000; ++i)
        values.push_back(std::sin(i / 90000.0) * 3 + static_cast<double>(random() % 1000) / 900);
    values[400000] = 9;
    area.AddSeries("", values);
    return area;
}

CScatterGraph Scatter(bool logarithmic) {
    CScatterGraph scatter;
    scatter.SetTitle("Weight and height");
    scatter.SetAxisTitles("Height in cm", "Weight in kg");
    scatter.SetLogarithmic(logarithmic);
    scatter.SetLogarithmicX(logarithmic);
    std::mt19937 random(2);
    for (const char* const name : {"Group A", "Group B", "Group C", "Group D"}) {
        std::vector<double> x, y;
        for (int i = 0; i < 40; ++i) {
            const double spread = static_cast<double>(random() % 1000) / 1000;
            x.push_back(150 + 40 * spread);
            y.push_back(45 + 40 * spread + static_cast<double>(random() % 200) / 10);
        }
        scatter.AddSeries(name, x, y);
    }
    return scatter;
}

CBarGraph Extremes() {
    CBarGraph bars;
    bars.AddSeries("", {1.7e308, -1.7e308, 1e-300, std::numeric_limits<double>::infinity()});
    return bars;
}

CScatterGraph Hours() {
    CScatterGraph scatter;
    scatter.SetTitle("Two days");
    scatter.SetDates(true);
    scatter.AddSeries("", {45000.1, 45000.9, 45001.4, 45001.9}, {1e9, 1.5e9, 2.1e9, 1.2e9});
    return scatter;
}

}  // namespace

std::vector<SampleChart> SampleCharts(int width, int height) {
    Samples samples(width, height);
    samples.Add("bars", Bars(false));
    samples.Add("stacked", Bars(true));
    samples.Add("long-names", LongNames());
    samples.Add("many-series", ManySeries());
    samples.Add("pie", Pie());
    samples.Add("area", Area(false));
    samples.Add("stacked-area", Area(true));
    samples.Add("million", Million());
    samples.Add("scatter", Scatter(false));
    samples.Add("scatter-log", Scatter(true));
    samples.Add("extremes", Extremes());
    samples.Add("hours", Hours());
    samples.Add("no-data", CPieGraph());
    std::vector<SampleChart> charts = samples.Take();
    CGraphManager manager;
    manager.SetTitle("Several charts with one legend");
    manager.SetSize(std::max(width, 400), 2 * height);
    manager.Add(Bars(false));
    manager.Add(Bars(true));
    manager.Add(Area(false));
    manager.Add(Pie());
    charts.push_back({"manager", manager.GetSvg()});
    return charts;
}
