// Marks a glossary's terms in 1 MB of text: few terms and many, and one automaton compared with a search for each term.
#include <benchmark/benchmark.h>

#include <random>

#include "qvcommon/HtmlWriter.h"
#include "tests/support/GlossaryRules.h"

namespace {

constexpr std::size_t kSize = 1 << 20;

std::string Word(std::mt19937& random) {
    constexpr const char* syllables[] = {"ra", "ne", "ti", "lo", "mu", "ser", "Con", "pla", "de", "gis", "or", "ach"};
    std::string word;
    for (unsigned n = 2 + random() % 3; n > 0; --n) word += syllables[random() % std::size(syllables)];
    return word;
}

struct Glossary {
    CStringArray terms, explanations;

    void Add(const std::string& term) {
        terms.Add(term);
        explanations.Add("What \"" + term + "\" means & where it is used");
    }
};

struct Material {
    std::string text;
    Glossary few, many,
        common;  // 20 terms that occur; also 1980 with the same prefixes that do not; 2000 that mark half the words

    Material() {
        std::mt19937 random(1);
        std::vector<std::string> words;
        for (int i = 0; i < 20000; ++i) words.push_back(Word(random));
        while (text.size() < kSize) text += words[random() % words.size()] + (random() % 9 ? " " : ", ");
        for (int i = 0; i < 2000; ++i) {
            if (i < 20) few.Add(words[static_cast<std::size_t>(i)]);
            many.Add(words[static_cast<std::size_t>(i)] + (i < 20 ? "" : "que"));
            common.Add(words[static_cast<std::size_t>(i)]);
        }
    }
};

const Material& Text() {
    static const Material material;
    return material;
}

template <CString (*mark)(std::string_view, const CStringArray&, const CStringArray&), Glossary Material::*glossary>
void Mark(benchmark::State& state) {
    const Glossary& used = Text().*glossary;
    for (auto _ : state) benchmark::DoNotOptimize(mark(Text().text, used.terms, used.explanations));
}

constexpr auto kOurs = CHtmlWriter::GetGlossarizedText;

BENCHMARK(Mark<kOurs, &Material::few>)->Name("GlossaryTerms/20");
BENCHMARK(Mark<kOurs, &Material::many>)->Name("GlossaryTerms/2000");
BENCHMARK(Mark<kOurs, &Material::common>)->Name("GlossaryTerms/2000 that mark every second word");

BENCHMARK(Mark<kOurs, &Material::few>)->Name("Glossary20/QvCommon");
BENCHMARK(Mark<qv::test::MarkTermByTerm, &Material::few>)->Name("Glossary20/Search for each term");

}  // namespace
