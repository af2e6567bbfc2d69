#pragma once

/// @file Charts as SVG: bars, pies, areas and points, alone or several with one legend. Nothing in them runs scripts.
///
/// **What is written** is one `<svg>` element of SVG 1.1 in ASCII (other characters are character references), so it fits
/// into a page of any encoding and is a well-formed XML document by itself. Equal charts give equal bytes. It has a
/// title, a description and, for screen readers, a table of the values; more than 100 rows are summed up by count, least
/// and greatest. Colours follow the reader's light or dark setting (prefers-color-scheme). Style rules and ids begin with
/// the chart's own id, so charts disturb neither each other nor the page.
///
/// **Texts** are bytes in the process's code page and are escaped. Control characters and marks of writing direction are
/// dropped; at most 500 characters of a text are used. A text that has no room ends in an ellipsis and shows whole when
/// the pointer rests on it. Texts never overlap and never leave the picture, as long as the reader's font is not wider
/// than common ones (DejaVu Sans, Verdana).
///
/// **Missing values** are NaN, infinities and, on a logarithmic axis, what is not above 0. They are gaps; no value at all
/// gives a chart that says "No data". Any other double can be drawn.
///
/// **Size**: the output is bounded by the picture's width and height, not by the count of values, and time grows in line
/// with that count (areas whose x values are not sorted are sorted first).
///
/// **Errors**: members that refuse an argument raise CInvalidArgException* and change nothing. Charts are values that own
/// what they are given. One object, one thread.

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "qvcommon/HtmlWriter.h"
#include "qvcommon/framework/DateTime.h"

namespace qv::charts {
class Keys;
class Svg;
struct Box;
struct Series;
struct Table;
enum class Swatch;
}  // namespace qv::charts

/// What all charts have: texts, a size, and series of values.
class QVCOMMON_API CGraph {
public:
    virtual ~CGraph();

    /// The heading; empty by default, and then the kind of chart is its name for screen readers.
    void SetTitle(const char* title) { m_title = title; }
    /// What the chart shows, for screen readers. By default it names the kind of chart and the numbers of series and values.
    void SetDescription(const char* description) { m_description = description; }
    /// In pixels; 720 by 400 at first. A page that is narrower shrinks the picture.
    /// @throws CInvalidArgException* outside 160 to 4000 by 120 to 4000.
    void SetSize(int width, int height);
    /// The id of the element and the start of all ids in it: a letter, then letters, digits, "-" and "_". By default it is
    /// made from the content, so that only equal charts have the same.
    /// @throws CInvalidArgException* for any other text.
    void SetId(const char* id);
    /// Names of the positions 1, 2, … of the values. Values without a name are named by their number.
    void SetCategories(CStringArray categories);

    /// Appends a series. @return its index, from 0. @throws CInvalidArgException* for more than 48 series.
    int AddSeries(std::string_view name, std::vector<double> values);
    /// The number of series so far.
    int GetSeriesCount() const;

    /// The `<svg>` element. @throws CInvalidArgException* as SetStacked and SetLogarithmic say.
    CString GetSvg() const;
    /// Appends it to the page. @throws CFileException* as the writer does.
    void WriteTo(CHtmlWriter& page) const { page.AddFormattedText(GetSvg()); }
    /// Saves it whole or not at all. @throws CFileException*, the file is then what it was.
    void SaveFile(const char* path) const;

protected:
    CGraph();
    CGraph(const CGraph&);
    CGraph(CGraph&&) noexcept;
    CGraph& operator=(const CGraph&);
    CGraph& operator=(CGraph&&) noexcept;

    /// `x` is empty or has as many values as `y`.
    int Append(std::string_view name, std::vector<double> x, std::vector<double> y);
    /// All series, in the order in which they came.
    const std::vector<qv::charts::Series>& AllSeries() const { return m_series; }
    /// The names as SetCategories got them.
    const CStringArray& Categories() const { return m_categories; }
    /// The name of a position, from 0; its number from 1 when it has none.
    CString CategoryAt(std::size_t position) const;
    /// How many positions the longest series has.
    std::size_t CountPositions() const;

private:
    friend class CGraphManager;

    /// "Bar chart".
    virtual const char* Kind() const = 0;
    /// The names that need a key, in order.
    virtual std::vector<CString> KeyNames() const;
    virtual qv::charts::Swatch KeySwatch() const;
    /// Whether the chart, when alone, explains its colours itself.
    virtual bool HasOwnLegend() const { return false; }
    virtual bool HasData() const;
    virtual void Draw(qv::charts::Svg& svg, const qv::charts::Box& box, const qv::charts::Keys& keys) const = 0;
    /// What screen readers are told.
    virtual qv::charts::Table Values() const = 0;
    /// What else the bytes depend on.
    virtual std::string Settings() const = 0;

    CString Name() const;
    CString Description() const;
    unsigned long Checksum() const;

    CString m_title, m_description, m_id;
    CStringArray m_categories;
    std::vector<qv::charts::Series> m_series;
    int m_width = 720, m_height = 400;
};

/// A chart with two axes. Ticks are round numbers by the rule 1, 2, 5. Numbers have "," between thousands and "." before
/// decimals; from a million on "M", "bn" and "tn" mean 6, 9 and 12 zeros.
class QVCOMMON_API CAxisGraph : public CGraph {
public:
    /// The y title is above the axis, the x title below its right end. An empty text draws no title.
    void SetAxisTitles(const char* x, const char* y) {
        m_xTitle = x;
        m_yTitle = y;
    }
    /// Makes the y axis logarithmic. Bars and areas then begin at its lower end. What is stacked can have none: writing it
    /// raises CInvalidArgException*.
    void SetLogarithmic(bool logarithmic) { m_logarithmic = logarithmic; }

protected:
    CString m_xTitle, m_yTitle;  ///< empty for none
    bool m_logarithmic = false;  ///< of the y axis

    std::string Settings() const override;
};

/// Bars side by side for each category, or stacked: positive values up, negative ones down from 0.
///
/// Categories beyond what the width can show at 3 pixels each are folded: those with the greatest sums of absolute values
/// stay, in their order, and the last bar, "Others (N)", has the sum of the N others.
class QVCOMMON_API CBarGraph : public CAxisGraph {
public:
    /// Side by side at first.
    void SetStacked(bool stacked) { m_stacked = stacked; }

private:
    const char* Kind() const override { return "Bar chart"; }
    void Draw(qv::charts::Svg& svg, const qv::charts::Box& box, const qv::charts::Keys& keys) const override;
    qv::charts::Table Values() const override;
    std::string Settings() const override;

    bool m_stacked = false;
};

/// The categories' shares of the first series' sum, clockwise from the top in the given order, with a table of names, values
/// and percentages. Only values above 0 have a share.
///
/// Of more than SetMostSlices categories the smallest are folded into the last slice, "Others (N)".
class QVCOMMON_API CPieGraph : public CGraph {
public:
    /// 8 at first, the one of the others included. @throws CInvalidArgException* outside 2 to 24.
    void SetMostSlices(int count);

private:
    const char* Kind() const override { return "Pie chart"; }
    std::vector<CString> KeyNames() const override;
    bool HasOwnLegend() const override { return true; }
    bool HasData() const override;
    void Draw(qv::charts::Svg& svg, const qv::charts::Box& box, const qv::charts::Keys& keys) const override;
    qv::charts::Table Values() const override;
    std::string Settings() const override;

    int m_mostSlices = 8;
};

/// A chart whose values have x values, which are numbers or dates. Those of a series without x values are 1, 2, ….
class QVCOMMON_API CPointGraph : public CAxisGraph {
public:
    using CGraph::AddSeries;
    /// @throws CInvalidArgException* when there are not as many x as y values, and as AddSeries.
    int AddSeries(std::string_view name, std::vector<double> x, std::vector<double> y);
    /// Dates are local times, as COleDateTime is; one that is not valid makes its value a missing one. The x axis becomes
    /// one of dates, for all series.
    int AddSeries(std::string_view name, std::span<const COleDateTime> dates, std::vector<double> y);
    /// Makes the x values days, as COleDateTime counts them. Ticks are at round local times: seconds to hours, days,
    /// weeks from Monday, months, years; the axis is even in the time that clocks show. Names of months are those of the
    /// current C locale.
    void SetDates(bool dates) { m_dates = dates; }

protected:
    bool m_dates = false;  ///< x values are days

    qv::charts::Table Values() const override;
    std::string Settings() const override;
    /// Copies of the series that all have x values, with dates on an even scale and missing values as NaN.
    std::vector<qv::charts::Series> Points(bool logarithmicX) const;
};

/// Lines with the area below them filled, in the order of their x values. Of the values in a column of pixels the first,
/// least, greatest and last are drawn, so no peak is lost. Missing values interrupt the line.
class QVCOMMON_API CAreaGraph : public CPointGraph {
public:
    /// Each series is drawn on top of those before. Their x values must be the same: otherwise writing raises
    /// CInvalidArgException*. A missing value counts as 0.
    void SetStacked(bool stacked) { m_stacked = stacked; }

private:
    const char* Kind() const override { return "Area chart"; }
    qv::charts::Swatch KeySwatch() const override;
    void Draw(qv::charts::Svg& svg, const qv::charts::Box& box, const qv::charts::Keys& keys) const override;
    std::string Settings() const override;

    bool m_stacked = false;
};

/// A mark for each point, in a shape of the series' own. From 5000 points of a series on, one mark represents all in a
/// square of 2 pixels; the least and greatest value of each column of pixels keep their own.
class QVCOMMON_API CScatterGraph : public CPointGraph {
public:
    /// Makes the x axis logarithmic. Dates have no such axis: it has no effect on them.
    void SetLogarithmicX(bool logarithmic) { m_logarithmicX = logarithmic; }

private:
    const char* Kind() const override { return "Scatter chart"; }
    qv::charts::Swatch KeySwatch() const override;
    void Draw(qv::charts::Svg& svg, const qv::charts::Box& box, const qv::charts::Keys& keys) const override;
    std::string Settings() const override;

    bool m_logarithmicX = false;
};

/// Several charts in one picture, in rows, with one legend: a name has the same colour in all of them. The sizes, ids and
/// descriptions of the charts themselves do not count; their titles are above each.
class QVCOMMON_API CGraphManager {
public:
    CGraphManager();
    ~CGraphManager();
    CGraphManager(const CGraphManager&) = delete;
    CGraphManager& operator=(const CGraphManager&) = delete;

    /// Takes a chart of any of the kinds above, after those before.
    template <class GRAPH>
    void Add(GRAPH graph) {
        Take(std::make_unique<GRAPH>(std::move(graph)));
    }
    /// Each: as the member of CGraph.
    void SetTitle(const char* title) { m_title = title; }
    void SetDescription(const char* description) { m_description = description; }
    /// 720 by 400 at first; limits and errors as for CGraph.
    void SetSize(int width, int height);
    /// As CGraph::SetId.
    void SetId(const char* id);
    /// Charts beside each other; 2 at first. @throws CInvalidArgException* outside 1 to 12.
    void SetColumns(int columns);

    /// Each: As the members of CGraph. Without a chart there is "No data". @throws CInvalidArgException* also for more
    /// than 48 names, or where a chart would get less than 120 by 90 pixels.
    CString GetSvg() const;
    void WriteTo(CHtmlWriter& page) const { page.AddFormattedText(GetSvg()); }
    void SaveFile(const char* path) const;

private:
    void Take(std::unique_ptr<CGraph> graph);
    CString Description() const;
    std::string Id() const;
    qv::charts::Swatch KeySwatch() const;
    void DrawGraph(qv::charts::Svg& svg, const CGraph& graph, const qv::charts::Box& cell,
                   const qv::charts::Keys& keys) const;

    CString m_title, m_description, m_id;
    std::vector<std::unique_ptr<CGraph>> m_graphs;
    int m_width = 720, m_height = 400, m_columns = 2;
};
