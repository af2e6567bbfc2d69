// Escaping and building of pages, compared with other implementations.
#include <benchmark/benchmark.h>
#include <glib.h>

#include <QString>

#include "qvcommon/HtmlWriter.h"
#include "tests/support/ReplacementChain.h"

namespace {

constexpr std::size_t kSize = 1 << 20;

// Report text in which every `every`-th byte is special; none for 0.
std::string ReportText(std::size_t every) {
    constexpr std::string_view words = "Total of the quarter by region and product line, in thousands; ",
                               specials = "&<>\"\r\n";
    std::string text;
    while (text.size() < kSize) text += words[text.size() % words.size()];
    for (std::size_t i = 0, n = 0; every && i < kSize; i += every) text[i] = specials[n++ % specials.size()];
    return text;
}

const std::string kMixed = ReportText(33), kPlain = ReportText(0);

void Counted(benchmark::State& state) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(kSize));
}

#define QV_BENCH(group, who, expression)                           \
    void Run_##group##_##who(benchmark::State& state) {            \
        for (auto _ : state) benchmark::DoNotOptimize(expression); \
        Counted(state);                                            \
    }                                                              \
    BENCHMARK(Run_##group##_##who)->Name(#group "/" #who)

QV_BENCH(Clean, QvCommon, CHtmlWriter::Clean(kMixed));
QV_BENCH(Clean, Copy, CString(kMixed));
QV_BENCH(Clean, Replacements, qv::test::ChainClean(kMixed));
void Escape_GLib(benchmark::State& state) {
    for (auto _ : state) {
        gchar* const text = g_markup_escape_text(kMixed.data(), static_cast<gssize>(kMixed.size()));
        benchmark::DoNotOptimize(text);
        g_free(text);
    }
    Counted(state);
}
BENCHMARK(Escape_GLib)->Name("Clean/GLib");
const QString kMixedQt = QString::fromStdString(kMixed);
QV_BENCH(Clean, Qt, kMixedQt.toHtmlEscaped());

QV_BENCH(CleanWithoutSpecials, QvCommon, CHtmlWriter::Clean(kPlain));
QV_BENCH(CleanWithoutSpecials, Copy, CString(kPlain));

const std::string kCleaned = CHtmlWriter::Clean(kMixed).AsStd();
QV_BENCH(Dirty, QvCommon, CHtmlWriter::Dirty(kCleaned));
QV_BENCH(Dirty, Replacements, qv::test::ChainDirty(kCleaned));

QV_BENCH(PlainText, QvCommon, CHtmlWriter::HtmlToPlainText(kMixed));
QV_BENCH(PlainText, Replacements, qv::test::ChainPlainText(kMixed));

// A page of 4 MB in the pieces of a report.
constexpr std::string_view kPiece = "<td class=\"number\">1234</td>";
constexpr std::size_t kPieces = 4 * kSize / kPiece.size();

std::size_t BuildWithWriter() {
    CHtmlWriter page;
    for (std::size_t i = 0; i < kPieces; ++i) page.AddFormattedText(kPiece);
    return static_cast<std::size_t>(page.GetHtml().GetLength());
}

std::size_t BuildWithString() {
    std::string page;
    for (std::size_t i = 0; i < kPieces; ++i) page += kPiece;
    return page.size();
}

QV_BENCH(Append, QvCommon, BuildWithWriter());
QV_BENCH(Append, std_string, BuildWithString());

}  // namespace
