#include <memory>

#include "tools/qv/ChartData.h"
#include "tools/qv/Commands.h"
#include "tools/qv/Documents.h"
#include "tools/qv/Visible.h"

namespace qv::tool {
namespace {

struct Options : ChartOptions {
    std::string file = "-", output = "-";
};

void RefuseContradictions(const Options& options) {
    const bool isStacked = options.kind.starts_with("stacked");
    if (isStacked && options.logarithmic) throw WrongUsage("--log: stacked charts have no logarithmic axis");
    const bool hasPositions = options.kind == "scatter" || options.kind.ends_with("area");
    if (options.kind == "pie" && options.logarithmic) throw WrongUsage("--log: a pie has no axis");
    if (!hasPositions && options.dates) throw WrongUsage("--dates is for area and scatter");
    if (options.kind != "scatter" && options.logarithmicX) throw WrongUsage("--log-x is for scatter");
    if (options.dates && options.logarithmicX) throw WrongUsage("--log-x: an axis of dates is not logarithmic");
}

void Draw(const Options& options) {
    RefuseContradictions(options);
    const CString csv(ReadDocument(options.file));
    CString svg;
    try {
        svg = ChartOf(csv, options);
    } catch (const CommandError& error) {
        throw CommandError((IsStandardStream(options.file) ? "standard input" : ForOutput(Native(options.file))) +
                           ": " + VisibleOnTerminal(error.what()));
    }
    WriteDocument(options.output,
                  [&svg](CFile& file) { file.Write(svg.AsStd().data(), static_cast<UINT>(svg.AsStd().size())); });
}

}  // namespace

void AddChart(Command app) {
    const auto options = std::make_shared<Options>();
    Command command = app.Add("chart", "Draw comma-separated values as an SVG chart");
    command.AddOption("KIND", options->kind, "bar, stacked, pie, area, stacked-area, scatter")
        .Require()
        .OneOf({"bar", "stacked", "pie", "area", "stacked-area", "scatter"});
    command.AddPath("FILE", options->file, "The values; standard input by default, and for -");
    command.AddPath("-o,--output", options->output, "The file to write; standard output by default, and for -")
        .CallValue("FILE");
    command.AddOption("--title", options->title, "The heading");
    command.AddOption("--x-title", options->xTitle, "The title of the x axis, instead of the first column's name");
    command.AddOption("--y-title", options->yTitle, "The title of the y axis");
    command.AddOption("--width", options->width, "In pixels").CallValue("N").ShowDefault().Between(160, 4000);
    command.AddOption("--height", options->height, "In pixels").CallValue("N").ShowDefault().Between(120, 4000);
    command.AddFlag("--log", options->logarithmic, "Make the y axis logarithmic; values not above 0 are omitted");
    command.AddFlag("--log-x", options->logarithmicX, "Make the x axis logarithmic; for scatter");
    command.AddFlag("--dates", options->dates, "Read the first column as dates, in local time; for area and scatter");
    command.SetNotes(
        "The first line names the columns. The first column has labels, or x values for area and scatter; each\n"
        "other column is a series, of which pie draws the first. Empty fields, NA and NaN are missing values.");
    command.AddExample("qv chart bar sales.csv -o sales.svg --title Sales");
    command.SetAction([options] { Draw(*options); });
}

}  // namespace qv::tool
