#include "tools/qv/ChartData.h"

#include <algorithm>
#include <limits>

#include "qvcommon/StringHelper.h"
#include "tools/qv/Numbers.h"

namespace qv::tool {
namespace {

constexpr std::size_t kMostSeries = 48, kShown = 40;  // bytes of a field in a message

/// A record and the number of its first line, counted from 1.
struct Record {
    CStringArray fields;
    std::size_t line;
};

class Records {
public:
    explicit Records(std::string_view csv) : m_rest(csv) {
        if (m_rest.starts_with("\xEF\xBB\xBF")) m_rest.remove_prefix(3);
    }

    /// Reads the next record that is not empty; returns false at the end.
    bool Next(Record& record) {
        while (!m_rest.empty()) {
            record.line = m_line;
            std::string_view text = Take();
            if (text.ends_with('\r')) text.remove_suffix(1);
            if (text.empty()) continue;
            CStringHelper::CsvToArray(text, record.fields);
            return true;
        }
        return false;
    }

private:
    // A line end inside quotes is part of the field.
    std::string_view Take() {
        bool quoted = false;
        std::size_t end = 0;
        for (; end < m_rest.size() && (quoted || m_rest[end] != '\n'); ++end) {
            quoted ^= m_rest[end] == '"';
            m_line += m_rest[end] == '\n';
        }
        const std::string_view text = m_rest.substr(0, end);
        m_rest.remove_prefix(std::min(end + 1, m_rest.size()));
        ++m_line;
        return text;
    }

    std::string_view m_rest;
    std::size_t m_line = 1;
};

CommandError FailedAt(std::size_t line, std::size_t column, const std::string& what) {
    return CommandError("line " + std::to_string(line) + ", column " + std::to_string(column) + ": " + what);
}

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string Quoted(std::string_view field) {
    return "'" + std::string(field.substr(0, kShown)) + (field.size() > kShown ? "..." : "") + "'";
}

bool IsMissing(std::string_view field) {
    return field.empty() || field == "NA" || field == "NaN" || field == "nan";
}

bool ReadNumber(std::string_view field, double& value) {
    value = std::numeric_limits<double>::quiet_NaN();
    field = Trimmed(field);
    if (IsMissing(field)) return true;
    return ParseNumber(field, value);
}

/// The columns of a text.
class Columns {
public:
    Columns(std::string_view csv, bool dates) : m_isDates(dates) {
        Records records(csv);
        Record record;
        if (!records.Next(record)) throw CommandError("there are no values");
        ReadNames(record);
        while (records.Next(record)) ReadRow(record);
    }

    std::size_t Count() const { return m_values.size(); }
    const CString& Name(std::size_t column) const { return m_names[static_cast<int>(column) + 1]; }
    std::vector<double> Values(std::size_t column) const { return m_values[column]; }
    const CStringArray& Labels() const { return m_labels; }
    const CString& FirstName() const { return m_names[0]; }
    /// Whether every field of the first column is an x value.
    bool HasX() const { return m_firstBadX == 0; }
    /// @throws CommandError if the first column has a label.
    const std::vector<double>& X() const {
        if (!HasX())
            throw FailedAt(m_firstBadX, 1, Quoted(m_badX) + (m_isDates ? " is not a date" : " is not a number"));
        return m_x;
    }

private:
    void ReadNames(const Record& record) {
        m_names = record.fields;
        const std::size_t count = record.fields.AsStd().size() - 1;
        if (count == 0) throw FailedAt(record.line, 1, "there is no column of values after the first one");
        if (count > kMostSeries)
            throw FailedAt(record.line, kMostSeries + 2, "there are more than 48 columns of values");
        m_values.resize(count);
    }

    void ReadRow(const Record& record) {
        const auto& fields = record.fields.AsStd();
        if (fields.size() > m_values.size() + 1)
            throw FailedAt(record.line, m_values.size() + 2, "there are more fields than names in the first line");
        m_labels.Add(fields[0]);
        AddX(fields[0], record.line);
        for (std::size_t i = 0; i < m_values.size(); ++i) {
            double value = std::numeric_limits<double>::quiet_NaN();
            if (i + 1 < fields.size() && !ReadNumber(fields[i + 1], value))
                throw FailedAt(record.line, i + 2, Quoted(fields[i + 1]) + " is not a number");
            m_values[i].push_back(value);
        }
    }

    void AddX(const CString& field, std::size_t line) {
        double x = 0;
        COleDateTime date;
        const bool isX =
            m_isDates ? date.ParseDateTime(Trimmed(field)) : !Trimmed(field).empty() && ReadNumber(field, x);
        if (!isX && m_firstBadX == 0) {
            m_firstBadX = line;
            m_badX = field;
        }
        m_x.push_back(m_isDates ? date.m_dt : x);
    }

    bool m_isDates;
    CStringArray m_names, m_labels;
    CString m_badX;
    std::size_t m_firstBadX = 0;
    std::vector<double> m_x;
    std::vector<std::vector<double>> m_values;
};

template <class GRAPH>
CString Finish(GRAPH& graph, const ChartOptions& options) {
    graph.SetTitle(options.title.c_str());
    graph.SetSize(options.width, options.height);
    return graph.GetSvg();
}

template <class GRAPH>
void SetAxes(GRAPH& graph, const Columns& columns, const ChartOptions& options) {
    const CString x = options.xTitle.empty() ? columns.FirstName() : CString(options.xTitle);
    graph.SetAxisTitles(x, options.yTitle.c_str());
    graph.SetLogarithmic(options.logarithmic);
}

template <class GRAPH>
void AddLabelled(GRAPH& graph, const Columns& columns) {
    graph.SetCategories(columns.Labels());
    for (std::size_t i = 0; i < columns.Count(); ++i) graph.AddSeries(columns.Name(i), columns.Values(i));
}

void AddPoints(CPointGraph& graph, const Columns& columns, bool dates) {
    graph.SetDates(dates);
    for (std::size_t i = 0; i < columns.Count(); ++i) graph.AddSeries(columns.Name(i), columns.X(), columns.Values(i));
}

}  // namespace

CString ChartOf(std::string_view csv, const ChartOptions& options) {
    const Columns columns(csv, options.dates);
    if (options.kind == "pie") {
        CPieGraph pie;
        AddLabelled(pie, columns);
        return Finish(pie, options);
    }
    if (options.kind == "scatter") {
        CScatterGraph scatter;
        SetAxes(scatter, columns, options);
        scatter.SetLogarithmicX(options.logarithmicX);
        AddPoints(scatter, columns, options.dates);
        return Finish(scatter, options);
    }
    if (options.kind.ends_with("area")) {
        CAreaGraph area;
        SetAxes(area, columns, options);
        area.SetStacked(options.kind.starts_with("stacked"));
        if (columns.HasX() || options.dates)
            AddPoints(area, columns, options.dates);
        else
            AddLabelled(area, columns);
        return Finish(area, options);
    }
    CBarGraph bars;
    SetAxes(bars, columns, options);
    bars.SetStacked(options.kind == "stacked");
    AddLabelled(bars, columns);
    return Finish(bars, options);
}

}  // namespace qv::tool
