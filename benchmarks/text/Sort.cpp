// Sorts by the rules of a UTF-8 locale, compared with std::sort and strcoll, and with another library's collation by
// comparison and by keys.
#include <benchmark/benchmark.h>
#include <unicode/ucol.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <clocale>
#include <cstring>
#include <memory>
#include <random>

#include "qvcommon/StringHelper.h"

namespace {

constexpr int kCount = 100'000;

// Names as in a report: few first letters, many common prefixes, some letters beyond ASCII.
CStringArray Names(bool accented) {
    constexpr const char* folders[] = {"Invoices", "invoices", "Letters", "Photos", "\u00DCbersicht", "\u00E9t\u00E9"};
    std::mt19937 random(7);
    CStringArray names;
    for (int i = 0; i < kCount; ++i) {
        CString name;
        name.Format("%s %u/Document %u.html", folders[random() % (accented ? 6 : 4)], random() % 100,
                    random() % 1000000);
        names.Add(std::move(name));
    }
    return names;
}

bool InUtf8Locale(benchmark::State& state) {
    const bool set = std::setlocale(LC_ALL, "en_US.UTF-8") != nullptr;
    if (!set) state.SkipWithError("no locale en_US.UTF-8");
    return set;
}

template <class Sort>
void Sorted(benchmark::State& state, bool accented, Sort sort) {
    if (!InUtf8Locale(state)) return;
    const CStringArray names = Names(accented);
    for (auto _ : state) {
        state.PauseTiming();
        CStringArray copy = names;
        state.ResumeTiming();
        sort(copy);
        benchmark::DoNotOptimize(copy);
    }
}

void Ours(benchmark::State& state, bool accented) {
    Sorted(state, accented, [](CStringArray& names) { CStringHelper::SortStringArray(names, 0); });
}

void Strcoll(benchmark::State& state, bool accented) {
    Sorted(state, accented, [](CStringArray& names) {
        std::sort(names.begin(), names.end(),
                  [](const CString& a, const CString& b) { return std::strcoll(a, b) < 0; });
    });
}

struct CloseCollator {
    void operator()(UCollator* collator) const { ucol_close(collator); }
};
using Collator = std::unique_ptr<UCollator, CloseCollator>;

Collator OpenCollator() {
    UErrorCode error = U_ZERO_ERROR;
    return Collator(ucol_open("en_US", &error));
}

void IcuCompare(benchmark::State& state, bool accented) {
    const Collator collator = OpenCollator();
    Sorted(state, accented, [&](CStringArray& names) {
        std::sort(names.begin(), names.end(), [&](const CString& a, const CString& b) {
            UErrorCode error = U_ZERO_ERROR;
            return ucol_strcollUTF8(collator.get(), a, a.GetLength(), b, b.GetLength(), &error) == UCOL_LESS;
        });
    });
}

std::string IcuKey(const UCollator* collator, const CString& text) {
    std::u16string wide(text.size(), u'\0');
    int32_t size = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strFromUTF8(wide.data(), text.GetLength(), &size, text, text.GetLength(), &error);
    std::uint8_t key[512];
    const int32_t length = ucol_getSortKey(collator, wide.data(), size, key, sizeof(key));
    return std::string(reinterpret_cast<const char*>(key), static_cast<std::size_t>(length));
}

void IcuKeys(benchmark::State& state, bool accented) {
    const Collator collator = OpenCollator();
    Sorted(state, accented, [&](CStringArray& names) {
        std::vector<std::pair<std::string, CString>> keyed;
        keyed.reserve(names.AsStd().size());
        for (CString& name : names) keyed.emplace_back(IcuKey(collator.get(), name), std::move(name));
        std::sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
        for (auto name = names.begin(); auto& pair : keyed) *name++ = std::move(pair.second);
    });
}

#define QV_SORT(group, accented)                                                          \
    BENCHMARK_CAPTURE(Ours, group##1, accented)->Name(#group "/QvCommon");                \
    BENCHMARK_CAPTURE(Strcoll, group##2, accented)->Name(#group "/std::sort by strcoll"); \
    BENCHMARK_CAPTURE(IcuCompare, group##3, accented)->Name(#group "/ICU compare");       \
    BENCHMARK_CAPTURE(IcuKeys, group##4, accented)->Name(#group "/ICU keys")

QV_SORT(SortStringArray, false);
QV_SORT(SortStringArrayAccented, true);

}  // namespace
