#include <benchmark/benchmark.h>

#include <boost/algorithm/string/find.hpp>
#include <string>

#include "qvcommon/StringHelper.h"

namespace {

constexpr std::string_view kSentence =
    "It is a truth universally acknowledged, that a single man in possession of a good fortune, must be in want of a "
    "wife. ";

// A megabyte of prose with the search words at its end.
CString Prose(std::string_view end) {
    std::string text;
    while (text.size() < 1 << 20) text += kSentence;
    return text + std::string(end);
}

int UpperCaseBothAndFind(const CString& text, const CString& find) {
    CString upperText = text, upperFind = find;
    upperText.MakeUpper();
    upperFind.MakeUpper();
    return upperText.Find(upperFind);
}

int BoostFind(const CString& text, const CString& find) {
    const auto found = boost::ifind_first(text.AsStd(), find.AsStd());
    return found ? static_cast<int>(found.begin() - text.AsStd().begin()) : -1;
}

int Ours(const CString& text, const CString& find) {
    return CStringHelper::FindNoCase(text, find);
}

using Finder = int (*)(const CString&, const CString&);

void Run(benchmark::State& state, Finder finder, const char* find, const char* end) {
    const CString text = Prose(end), wanted = find;
    const int expected = UpperCaseBothAndFind(text, wanted);
    for (auto _ : state)
        if (finder(text, wanted) != expected) state.SkipWithError("another place found");
}

#define QV_FIND(group, find, end)                                                \
    BENCHMARK_CAPTURE(Run, group##1, Ours, find, end)->Name(#group "/QvCommon"); \
    BENCHMARK_CAPTURE(Run, group##2, UpperCaseBothAndFind, find, end)            \
        ->Name(#group "/making both upper case and searching");                  \
    BENCHMARK_CAPTURE(Run, group##3, BoostFind, find, end)->Name(#group "/boost::ifind_first")

QV_FIND(FindNoCase_AtTheEnd, "Elizabeth Bennet", "said eLIZABETH bENNET");
QV_FIND(FindNoCase_CommonLetters, "is a WAN", "is a wan");
QV_FIND(FindNoCase_Absent, "ZEBRA", "");

}  // namespace
