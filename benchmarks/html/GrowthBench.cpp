// Pages with more nodes, sections and terms, and HTML crafted to slow down a parser.
#include "benchmarks/support/Growth.h"
#include "qvcommon/HtmlDocument.h"
#include "qvcommon/HtmlTreeMenu.h"
#include "qvcommon/SortedHtmlWriter.h"

namespace {

// Ten children per node; every tenth level is one deeper.
void BuildTree(CHtmlTreeNode& parent, int& nodes) {
    std::vector<CHtmlTreeNode*> level{&parent};
    for (std::size_t i = 0; nodes > 0; ++i)
        for (int child = 0; child < 10 && nodes > 0; ++child, --nodes)
            level.push_back(level[i]->AddNode(new CHtmlTreeNode("A folder", "", "page.html#folder", nodes == 1)));
}

void TreeMenu(benchmark::State& state) {
    CHtmlTreeBuilder tree;
    int nodes = static_cast<int>(state.range());
    BuildTree(tree, nodes);
    for (auto _ : state) benchmark::DoNotOptimize(tree.GetHtml());
}

// A chain: each node has one child.
void DeepTreeMenu(benchmark::State& state) {
    const int size = static_cast<int>(state.range());
    CHtmlTreeBuilder tree;
    CHtmlTreeNode* last = &tree;
    for (int i = 0; i < size; ++i) last = last->AddNode(new CHtmlTreeNode("A folder", "", "", i == size - 1));
    for (auto _ : state) benchmark::DoNotOptimize(tree.GetHtml());
}

void SortedWriter(benchmark::State& state) {
    const int size = static_cast<int>(state.range());
    for (auto _ : state) {
        CSortedHtmlWriter sections;
        for (int i = 0; i < size; ++i)
            sections.GetWriter(std::to_string(i * 7919 % size)).AddParagraph("A section of the report");
        CHtmlWriter page;
        sections.GetHtml(page);
        benchmark::DoNotOptimize(page.GetHtml());
    }
}

std::string Repeated(std::string_view piece, const benchmark::State& state) {
    std::string text;
    for (std::int64_t i = 0; i < state.range(); ++i) text += piece;
    return text;
}

template <class Operation>
void Text(benchmark::State& state, Operation operation, std::string_view piece) {
    const std::string text = Repeated(piece, state);
    for (auto _ : state) benchmark::DoNotOptimize(operation(text));
}

constexpr auto kPlain = CHtmlWriter::HtmlToPlainText;
constexpr auto kClean = CHtmlWriter::Clean, kDirty = CHtmlWriter::Dirty;
constexpr auto kParse = CHtmlWriter::LoadDocument;
constexpr auto kRebase = [](const std::string& html) { return CHtmlWriter::GetRebasedBody(html, "other/"); };

void GlossaryTerms(benchmark::State& state) {
    CStringArray terms, explanations;
    const std::string text = Repeated("any words of a text ", state);
    for (std::int64_t i = 0; i < state.range(); ++i) {
        terms.Add("term " + std::to_string(i));
        explanations.Add("its meaning");
    }
    for (auto _ : state) benchmark::DoNotOptimize(CHtmlWriter::GetGlossarizedText(text, terms, explanations));
}

QV_GROWTH(TreeMenu, TreeMenu, 1000);
QV_GROWTH(TreeMenuDeep, DeepTreeMenu, 500);
QV_GROWTH(SortedWriter, SortedWriter, 2500);
QV_GROWTH(GlossaryTerms, GlossaryTerms, 5000);
QV_GROWTH_OF(Clean, Text, 20000, kClean, "a & b <c>");
QV_GROWTH_OF(Dirty, Text, 20000, kDirty, "a &amp; b &lt;c&gt;");
QV_GROWTH_OF(DirtyPrepared, Text, 100000, kDirty, "&");
QV_GROWTH_OF(HtmlToPlainText, Text, 20000, kPlain, "<p>a <b>b</b> c</p>");
QV_GROWTH_OF(HtmlToPlainTextPrepared, Text, 100000, kPlain, "<");
QV_GROWTH_OF(LoadDocument, Text, 20000, kParse, "<p>a <b>b</b> c</p>");
QV_GROWTH_OF(LoadDocumentPrepared, Text, 20000, kParse, "<a href='");
QV_GROWTH_OF(LoadDocumentUnclosedPrepared, Text, 20000, kParse, "<p><b><i>");
QV_GROWTH_OF(GetRebasedBody, Text, 20000, kRebase, "<a href='page.html'>a</a>");

}  // namespace
