// Ten times the work has to take about ten times as long: what a larger page costs beside a smaller one.
#include <benchmark/benchmark.h>

#include "qvcommon/HtmlTreeMenu.h"
#include "qvcommon/SortedHtmlWriter.h"

namespace {

// Ten nodes below each, every tenth level one deeper.
void BuildTree(CHtmlTreeNode& parent, int& nodes) {
    std::vector<CHtmlTreeNode*> level{&parent};
    for (std::size_t i = 0; nodes > 0; ++i)
        for (int child = 0; child < 10 && nodes > 0; ++child, --nodes)
            level.push_back(level[i]->AddNode(new CHtmlTreeNode("A folder", "", "page.html#folder", nodes == 1)));
}

template <int size>
void TreeMenu(benchmark::State& state) {
    CHtmlTreeBuilder tree;
    int nodes = size;
    BuildTree(tree, nodes);
    for (auto _ : state) benchmark::DoNotOptimize(tree.GetHtml());
}

// A chain: each node has one below it.
template <int size>
void DeepTreeMenu(benchmark::State& state) {
    CHtmlTreeBuilder tree;
    CHtmlTreeNode* last = &tree;
    for (int i = 0; i < size; ++i) last = last->AddNode(new CHtmlTreeNode("A folder", "", "", i == size - 1));
    for (auto _ : state) benchmark::DoNotOptimize(tree.GetHtml());
}

template <int size>
void SortedWriter(benchmark::State& state) {
    for (auto _ : state) {
        CSortedHtmlWriter sections;
        for (int i = 0; i < size; ++i)
            sections.GetWriter(std::to_string(i * 7919 % size)).AddParagraph("A section of the report");
        CHtmlWriter page;
        sections.GetHtml(page);
        benchmark::DoNotOptimize(page.GetHtml());
    }
}

BENCHMARK(TreeMenu<1000>)->Name("TreeMenu/1000 nodes");
BENCHMARK(TreeMenu<10000>)->Name("TreeMenu/10000 nodes");
BENCHMARK(DeepTreeMenu<200>)->Name("DeepTreeMenu/200 nodes");
BENCHMARK(DeepTreeMenu<2000>)->Name("DeepTreeMenu/2000 nodes");
BENCHMARK(SortedWriter<1000>)->Name("SortedWriter/1000 sections");
BENCHMARK(SortedWriter<10000>)->Name("SortedWriter/10000 sections");

}  // namespace
