#include "tests/support/SampleCharts.h"

#include <cmath>
#include <limits>

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

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
        "A title that is far too long for one line, and so continues in another one until even that has no room");
    bars.SetCategories({"United Kingdom of Great Britain and Northern Ireland", "Bosnia and Herzegovina",
                        "<script>harm()</script>", "\"><svg onload=harm()>", "C\xC3\xB4te d'Ivoire",
                        "\xE6\x97\xA5\xE6\x9C\xAC", CString('W', 37), "", "\xE2\x80\xAEtxet", "ok"});
    bars.AddSeries("Only", {12, 9, 8.5, 7, 6, 5, 4, 3, 1, 0.5});
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
    CStringArray names{"One person", "Two persons"};
    std::vector<double> values{17.0, 13.9};
    for (int i = 0; i < 15; ++i) {
        names.Add("Household of kind " + CString(std::to_string(i)));
        values.push_back(3.8 / (i + 1));
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
    std::vector<double> values;
    for (int i = 0; i < 1000000; ++i) values.push_back(std::sin(i / 90000.0) * 3 + i % 1000 * 919 % 1000 / 900.0);
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
    for (int group = 0; group < 4; ++group) {
        std::vector<double> heights, weights;
        for (int i = group; i < 160; i += 4) {
            heights.push_back(150 + 0.25 * i);
            weights.push_back(45 + 0.25 * i + i * 37 % 200 / 10.0);
        }
        scatter.AddSeries("Group " + std::to_string(group), heights, weights);
    }
    return scatter;
}

}  // namespace

std::vector<SampleChart> SampleCharts(int width, int height) {
    std::vector<SampleChart> charts;
    const auto add = [&](const char* name, auto graph) {
        graph.SetSize(width, height);
        charts.push_back({name, graph.GetSvg()});
    };
    add("bars", Bars(false));
    add("stacked", Bars(true));
    add("long-names", LongNames());
    add("many-series", ManySeries());
    add("pie", Pie());
    add("area", Area(false));
    add("stacked-area", Area(true));
    add("million", Million());
    add("scatter", Scatter(false));
    add("scatter-log", Scatter(true));
    add("no-data", CPieGraph());
    CBarGraph extremes;
    extremes.AddSeries("", {1.7e308, -1.7e308, 1e-300, std::numeric_limits<double>::infinity()});
    add("extremes", extremes);
    CScatterGraph hours;
    hours.SetDates(true);
    hours.AddSeries("", {45000.1, 45000.9, 45001.4, 45001.9}, {1e9, 1.5e9, 2.1e9, 1.2e9});
    add("hours", hours);
    CGraphManager manager;
    manager.SetTitle("Several charts with one legend");
    manager.SetSize(std::max(width, 400), std::max(2 * height, 380));
    manager.Add(Bars(false));
    manager.Add(Bars(true));
    manager.Add(Area(false));
    manager.Add(Pie());
    charts.push_back({"manager", manager.GetSvg()});
    return charts;
}
