#include "benchmarks/support/Growth.h"
#include "qvcommon/MathHelper.h"
#include "qvcommon/Replacers.h"
#include "qvcommon/StringHelper.h"

// Search operations on a plain text and on a repetitive one without a match.

namespace {

using H = CStringHelper;

struct Sought {
    CString text, find;
};

Sought Plain(int size) {
    CString text;
    for (int i = 0; text.GetLength() < size; ++i) text += CStringHelper::Format("Folder\\Document number %d.html\n", i);
    return {text, "Document without a number"};
}

Sought Prepared(int size) {
    return {CString('a', size), CString('a', size / 2) + "b"};
}

template <class Value>
void Use(Value&& value) {
    benchmark::DoNotOptimize(value);
}

const struct {
    const char* name;
    void (*search)(const Sought& s);
} kSearches[] = {
    {"Find", [](const Sought& s) { Use(s.text.Find(s.find)); }},
    {"Replace", [](const Sought& s) { Use(CString(s.text).Replace(s.find, "x")); }},
    {"CountOf", [](const Sought& s) { Use(H::CountOf(s.text, s.find)); }},
    {"FindNoCase", [](const Sought& s) { Use(H::FindNoCase(s.text, s.find)); }},
    // U+017F is an S in upper case.
    {"FindNoCaseOfS", [](const Sought& s) { Use(H::FindNoCase(s.text, CString('s', s.find.GetLength()))); }},
    {"ReplaceNoCase",
     [](const Sought& s) {
         CString text = s.text;
         H::ReplaceNoCase(text, s.find, "x");
         Use(text);
     }},
    {"ReplaceAll",
     [](const Sought& s) {
         CString text = s.text;
         H::ReplaceAll(text, s.find, "x");
         Use(text);
     }},
    {"ReplaceAllByHolder",
     [](const Sought& s) {
         CString text = "y";
         H::ReplaceAll(text, s.find, s.text);
         Use(text);
     }},
    {"ReplaceBetween", [](const Sought& s) { Use(H::ReplaceBetween(s.text, "a", s.find, "x")); }},
    {"StripBefore",
     [](const Sought& s) {
         std::string_view text = s.text;
         Use(H::StripBefore(text, s.find));
     }},
    {"StripAfter",
     [](const Sought& s) {
         std::string_view text = s.text;
         Use(H::StripAfter(text, s.find));
     }},
    {"RemoveAfter", [](const Sought& s) { Use(H::RemoveAfter(s.text, s.find)); }},
    {"GetStringBetween",
     [](const Sought& s) {
         std::string_view text = s.text;
         Use(H::GetStringBetween(text, "a", s.find));
     }},
    {"IsStringInRange", [](const Sought& s) { Use(H::IsStringInRange(s.text, "a", s.find)); }},
    {"FindWholeWord", [](const Sought& s) { Use(H::FindWholeWord(s.text, s.find)); }},
    {"SplitString", [](const Sought& s) { Use(H::SplitString(s.text, s.find)); }},
    {"ReplaceEscapes",
     [](const Sought& s) {
         CStripTag replacer;
         replacer.SetEndFind(s.find);
         Use(replacer.ReplaceEscapes(s.text));
     }},
    {"WalkBetween",
     [](const Sought& s) {
         std::string_view rest = s.text;
         while (!H::GetStringBetween(rest, s.text.Left(1), s.text.Left(1), 1).empty()) {
         }
         Use(rest);
     }},
    {"WalkStripLeft",
     [](const Sought& s) {
         std::string_view rest = s.text, head;
         while (H::StripLeft(rest, s.text.Left(1), head)) {
         }
         Use(head);
     }},
};

// Multiples of a number that is a typical length of hash tables of this size.
void RemoveNumbers(benchmark::State& state, UINT step) {
    CUIntArray all;
    for (int i = 0; i < state.range(); ++i) all.Add(static_cast<UINT>(i) * step);
    for (auto _ : state) {
        CUIntArray values = all;
        CMathHelper::RemoveDuplicates(values);
        Use(values);
    }
}
QV_GROWTH_OF(RemoveDuplicateNumbers, RemoveNumbers, 15000, 1);
QV_GROWTH_OF(RemoveDuplicateNumbersPrepared, RemoveNumbers, 15000, 62233);

[[maybe_unused]] const bool g_registered = [] {
    for (const auto& row : kSearches)
        for (const bool prepared : {false, true}) {
            const std::string name = std::string("Growth_") + row.name + (prepared ? "Prepared" : "") + "/QvCommon";
            const auto run = [search = row.search, prepared](benchmark::State& state) {
                const int size = static_cast<int>(state.range());
                const Sought sought = prepared ? Prepared(size) : Plain(size);
                for (auto _ : state) search(sought);
            };
            benchmark::RegisterBenchmark(name.c_str(), run)->Arg(100000)->Arg(400000);
        }
    return true;
}();

}  // namespace
