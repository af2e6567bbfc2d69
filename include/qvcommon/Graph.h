#pragma once

/// @file Charts as SVG: bars, pies, areas and points, alone or several with one legend. They contain no scripts.
///
/// **Output** is one `<svg>` element of SVG 1.1 in ASCII (other characters are character references), so it can be
/// embedded in a page of any encoding and is a well-formed XML document by itself. Equal charts give equal bytes. It
/// has a title, a description and, for screen readers, a table of the values; more than 100 rows are summarized by
/// count, minimum and maximum. Colours follow the reader's light or dark setting (prefers-color-scheme). Style rules
/// and ids begin with the chart's own id, so charts do not affect each other or the page.
///
/// **Strings** are bytes in the process's code page and are escaped. Control characters and bidirectional controls are
/// dropped; at most 500 characters of a string are used. A string that does not fit is truncated with an ellipsis and
/// shown in full as a tooltip. Strings never overlap and never leave the picture, unless the reader's font is wider
/// than common ones (DejaVu Sans, Verdana).
///
/// **Missing values** are NaN, infinities and, on a logarithmic axis, values that are not above 0. They are gaps; a
/// chart without any value says "No data". Any other double can be drawn.
///
/// **Size**: the output is bounded by the picture's width and height, not by the number of values, and time is O(n) in
/// that number (areas whose x values are not sorted are sorted first).
///
/// **Errors**: members that reject an argument raise CInvalidArgException* and change nothing. Charts are values that
/// own their data. Not thread-safe.

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

/// What all pictures have: a heading, a size, an id, and the ways to write them.
class QVCOMMON_API CGraphPicture {
public:
    virtual ~CGraphPicture();

    /// Sets the heading; empty by default, in which case screen readers announce the kind of picture.
    void SetTitle(const char* title) { m_title = title; }
    /// Sets the description for screen readers. By default it names the kind of chart and the numbers of series and
    /// values, or the charts of the picture.
    void SetDescription(const char* description) { m_description = description; }
    /// Sets the size in pixels; 720 by 400 by default. A narrower page shrinks the picture.
    /// @throws CInvalidArgException* outside 160 to 4000 by 120 to 4000.
    void SetSize(int width, int height);
    /// Sets the id of the element and the prefix of all ids in it: a letter, then letters, digits, "-" and "_". By
    /// default it is derived from the content, so that only equal pictures have the same.
    /// @throws CInvalidArgException* for any other string.
    void SetId(const char* id);

    /// Returns the `<svg>` element. @throws CInvalidArgException* if the chart's settings contradict each other, as
    /// described there, or do not fit the picture.
    virtual CString GetSvg() const = 0;
    /// Appends it to the page. @throws CFileException* as the writer does.
    void WriteTo(CHtmlWriter& page) const { page.AddFormattedText(GetSvg()); }
    /// Saves it atomically. @throws CFileException*, leaving the file unchanged.
    void SaveFile(const char* path) const;

protected:
    CGraphPicture();
    CGraphPicture(const CGraphPicture&);
    CGraphPicture(CGraphPicture&&) noexcept;
    CGraphPicture& operator=(const CGraphPicture&);
    CGraphPicture& operator=(CGraphPicture&&) noexcept;

    CString m_title, m_description, m_id;  ///< as passed to the setters, else empty
    int m_width = 720, m_height = 400;     ///< in pixels
};

/// Base of all charts: a picture of series of values.
class QVCOMMON_API CGraph : public CGraphPicture {
public:
    ~CGraph() override;

    /// Sets the names of the positions 1, 2, … of the values. Values without a name are labelled with their number.
    void SetCategories(CStringArray categories);

    /// Appends a series. @return its index, from 0. @throws CInvalidArgException* if there would be more than 48
    /// series.
    int AddSeries(std::string_view name, std::vector<double> values);
    /// Returns the number of series.
    int GetSeriesCount() const;

    /// @throws CInvalidArgException* as described at SetStacked and SetLogarithmic.
    CString GetSvg() const override;

protected:
    CGraph();
    CGraph(const CGraph&);
    CGraph(CGraph&&) noexcept;
    CGraph& operator=(const CGraph&);
    CGraph& operator=(CGraph&&) noexcept;

    /// `x` is empty or has as many values as `y`.
    int Append(std::string_view name, std::vector<double> x, std::vector<double> y);
    /// All series, in insertion order.
    const std::vector<qv::charts::Series>& AllSeries() const { return m_series; }
    /// The names as passed to SetCategories.
    const CStringArray& Categories() const { return m_categories; }
    /// Returns the name of a position, from 0; its number, from 1, if it has none.
    CString CategoryAt(std::size_t position) const;
    /// Returns the number of positions of the longest series.
    std::size_t CountPositions() const;

private:
    friend class CGraphManager;

    /// For example "Bar chart".
    virtual const char* Kind() const = 0;
    /// The names listed in the legend, in order.
    virtual std::vector<CString> KeyNames() const;
    virtual qv::charts::Swatch KeySwatch() const;
    /// Whether the chart, when alone, draws its own legend.
    virtual bool HasOwnLegend() const { return false; }
    /// @throws CInvalidArgException* if settings contradict each other, regardless of the values.
    virtual void Check() const {}
    /// Whether there is a value to draw.
    virtual bool HasData() const = 0;
    virtual void Draw(qv::charts::Svg& svg, const qv::charts::Box& box, const qv::charts::Keys& keys) const = 0;
    /// The table for screen readers.
    virtual qv::charts::Table Values() const = 0;
    /// Other state that affects the output.
    virtual std::string Settings() const = 0;

    CString Name() const;
    CString Description() const;
    unsigned long Checksum() const;

    CStringArray m_categories;
    std::vector<qv::charts::Series> m_series;
};

/// A chart with two axes. Ticks are round numbers by the rule 1, 2, 5. Numbers have "," between thousands and "." before
/// decimals; from a million on "M", "bn" and "tn" mean 6, 9 and 12 zeros.
class QVCOMMON_API CAxisGraph : public CGraph {
public:
    /// Sets the axis titles: y above the axis, x below its right end. An empty string draws no title, and a chart that is
    /// too low for them has none.
    void SetAxisTitles(const char* x, const char* y) {
        m_xTitle = x;
        m_yTitle = y;
    }
    /// Makes the y axis logarithmic. Bars and areas then begin at its lower end. Not supported for stacked charts:
    /// writing one raises CInvalidArgException*.
    void SetLogarithmic(bool logarithmic) { m_logarithmic = logarithmic; }

protected:
    CString m_xTitle, m_yTitle;  ///< empty for none
    bool m_logarithmic = false;  ///< of the y axis

    bool HasData() const override;
    std::string Settings() const override;
};

/// Bars side by side for each category, or stacked: positive values upwards, negative ones downwards from 0.
///
/// If there are more categories than fit into the width at 3 pixels each, those with the greatest sums of absolute
/// values are kept, in their order, and the last bar, "Others (N)", has the sum of the N others.
class QVCOMMON_API CBarGraph : public CAxisGraph {
public:
    /// Side by side by default.
    void SetStacked(bool stacked) { m_stacked = stacked; }

private:
    const char* Kind() const override { return "Bar chart"; }
    void Check() const override;
    void Draw(qv::charts::Svg& svg, const qv::charts::Box& box, const qv::charts::Keys& keys) const override;
    qv::charts::Table Values() const override;
    std::string Settings() const override;

    bool m_stacked = false;
};

/// The categories' shares of the first series' sum, clockwise from the top in the given order, with a table of names,
/// values and percentages. Only values above 0 have a share.
///
/// If there are more than SetMostSlices categories, the smallest are combined in the last slice, "Others (N)".
class QVCOMMON_API CPieGraph : public CGraph {
public:
    /// 8 by default, including the slice of the others. @throws CInvalidArgException* outside 2 to 24.
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

/// A chart whose values have x values, which are numbers or dates. They default to 1, 2, ….
class QVCOMMON_API CPointGraph : public CAxisGraph {
public:
    using CGraph::AddSeries;
    /// @throws CInvalidArgException* if the numbers of x and y values differ, and as AddSeries.
    int AddSeries(std::string_view name, std::vector<double> x, std::vector<double> y);
    /// Dates are local times, as COleDateTime is; an invalid one makes its value missing. The x axis becomes a date
    /// axis, for all series.
    int AddSeries(std::string_view name, std::span<const COleDateTime> dates, std::vector<double> y);
    /// Treats the x values as days, as COleDateTime counts them. Ticks are at round local times: seconds to hours,
    /// days, weeks from Monday, months, years; the axis is linear in local clock time. Names of months are those of the
    /// current C locale.
    void SetDates(bool dates) { m_dates = dates; }

protected:
    bool m_dates = false;  ///< x values are days

    bool HasData() const override;
    qv::charts::Table Values() const override;
    std::string Settings() const override;
    /// Returns copies of the series with all x values present, with dates on a linear scale and missing values as NaN.
    std::vector<qv::charts::Series> Points(bool logarithmicX) const;
    /// Returns whether any of them is not missing.
    bool HasPoints(bool logarithmicX) const;
};

/// Lines with the area below them filled, in the order of their x values. Of the values in a column of pixels the
/// first, minimum, maximum and last are drawn, so no peak is lost. Missing values interrupt the line.
class QVCOMMON_API CAreaGraph : public CPointGraph {
public:
    /// Draws each series on top of the previous ones. Their x values must be the same: otherwise writing raises
    /// CInvalidArgException*. A missing value counts as 0.
    void SetStacked(bool stacked) { m_stacked = stacked; }

private:
    const char* Kind() const override { return "Area chart"; }
    void Check() const override;
    bool HasData() const override;
    qv::charts::Swatch KeySwatch() const override;
    void Draw(qv::charts::Svg& svg, const qv::charts::Box& box, const qv::charts::Keys& keys) const override;
    std::string Settings() const override;

    bool m_stacked = false;
};

/// A mark for each point, with a shape per series. From 5000 points of a series on, one mark represents all points in a
/// square of 2 pixels; the minimum and maximum of each column of pixels keep their own.
class QVCOMMON_API CScatterGraph : public CPointGraph {
public:
    /// Makes the x axis logarithmic. No effect on dates.
    void SetLogarithmicX(bool logarithmic) { m_logarithmicX = logarithmic; }

private:
    const char* Kind() const override { return "Scatter chart"; }
    bool HasLogarithmicX() const;
    bool HasData() const override;
    qv::charts::Swatch KeySwatch() const override;
    void Draw(qv::charts::Svg& svg, const qv::charts::Box& box, const qv::charts::Keys& keys) const override;
    std::string Settings() const override;

    bool m_logarithmicX = false;
};

/// Several charts in one picture, in rows, with one legend: a name has the same colour in all of them. The sizes, ids
/// and descriptions of the individual charts are ignored; their titles are above each.
class QVCOMMON_API CGraphManager : public CGraphPicture {
public:
    CGraphManager();
    ~CGraphManager() override;
    CGraphManager(const CGraphManager&) = delete;
    CGraphManager& operator=(const CGraphManager&) = delete;

    /// Appends a chart of any of the kinds above.
    template <class GRAPH>
    void Add(GRAPH graph) {
        Take(std::make_unique<GRAPH>(std::move(graph)));
    }
    /// Sets the number of charts per row; 2 by default. @throws CInvalidArgException* outside 1 to 12.
    void SetColumns(int columns);

    /// Without charts the picture says "No data". @throws CInvalidArgException* as the charts' own, and for more than 48
    /// names, or if a chart would get less than 120 by 90 pixels.
    CString GetSvg() const override;

private:
    void Take(std::unique_ptr<CGraph> graph);
    CString Description() const;
    std::string Id() const;
    qv::charts::Swatch KeySwatch() const;
    void DrawGraph(qv::charts::Svg& svg, const CGraph& graph, const qv::charts::Box& cell,
                   const qv::charts::Keys& keys) const;

    std::vector<std::unique_ptr<CGraph>> m_graphs;
    int m_columns = 2;
};
