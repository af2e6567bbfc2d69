// Sections of 10 MB, read and written, beside the parsers and the writer of two XML libraries.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>

#include <pugixml.hpp>
#include <sstream>

#include "qvcommon/XmlSection.h"

namespace {

constexpr std::size_t kSize = 10 << 20;
constexpr std::string_view kName = "Report of the quarter & more", kNote = "12,5 <high>";

const CStringArray kValues{"one", "two", "three"};

void AddValues(CXmlSection& section, int number) {
    section.AddInteger("Number", number + 1);
    section.AddString("Name", kName);
    section.AddString("Note", kNote);
    section.AddStringArray("Values", kValues);
}

// Each record's tags as lines of their own.
CString WriteFlat(int records) {
    CXmlSection section;
    section.AppendRawXml("<Root>", 1, 0);
    for (int i = 0; i < records; ++i) {
        section.AppendRawXml("<Record>", 1, 0);
        AddValues(section, i);
        section.AppendRawXml("</Record>", 0, 1);
    }
    section.AppendRawXml("</Root>", 0, 1);
    return section.GetRawXml();
}

// Each record as a section of its own, put into the other.
CString WriteNested(int records) {
    CXmlSection section;
    section.AppendRawXml("<Root>", 1, 0);
    for (int i = 0; i < records; ++i) {
        CXmlSection record("Record");
        AddValues(record, i);
        section.AddSection(record);
    }
    section.AppendRawXml("</Root>", 0, 1);
    return section.GetRawXml();
}

const int kRecords = static_cast<int>(kSize) / WriteFlat(1).GetLength();
const CString kText = WriteFlat(kRecords);

void Counted(benchmark::State& state) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * kText.GetLength());
}

void Read_QvCommon(benchmark::State& state) {
    for (auto _ : state) {
        CXmlSection section;
        benchmark::DoNotOptimize(section.SetRawXml(kText));
    }
    Counted(state);
}
BENCHMARK(Read_QvCommon)->Name("SetRawXml/QvCommon");

void Read_libxml2(benchmark::State& state) {
    for (auto _ : state) xmlFreeDoc(xmlReadMemory(kText, kText.GetLength(), nullptr, nullptr, 0));
    Counted(state);
}
BENCHMARK(Read_libxml2)->Name("SetRawXml/libxml2");

void Read_pugixml(benchmark::State& state) {
    for (auto _ : state) {
        pugi::xml_document doc;
        benchmark::DoNotOptimize(doc.load_buffer(kText, static_cast<std::size_t>(kText.GetLength())));
    }
    Counted(state);
}
BENCHMARK(Read_pugixml)->Name("SetRawXml/pugixml");

void Write_QvCommon(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(WriteFlat(kRecords));
    Counted(state);
}
BENCHMARK(Write_QvCommon)->Name("Write/QvCommon");

void Write_Nested(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(WriteNested(kRecords));
    Counted(state);
}
BENCHMARK(Write_Nested)->Name("Write/QvCommon_nested");

// The tree is there already.
void Write_pugixml(benchmark::State& state) {
    pugi::xml_document doc;
    doc.load_buffer(kText, static_cast<std::size_t>(kText.GetLength()));
    for (auto _ : state) {
        std::ostringstream out;
        doc.save(out, "    ");
        benchmark::DoNotOptimize(out.str());
    }
    Counted(state);
}
BENCHMARK(Write_pugixml)->Name("Write/pugixml");

// The indentation makes the text grow with the square of the depth; by its bytes the two lines are to stay near each other.
void AppendNested(benchmark::State& state) {
    std::int64_t bytes = 0;
    for (auto _ : state) {
        CXmlSection section;
        for (int i = 0; i < state.range(); ++i) section.AppendRawXml("<a>", 1, 0);
        for (int i = 0; i < state.range(); ++i) section.AppendRawXml("</a>", 0, 1);
        bytes += section.GetRawXml().GetLength();
    }
    state.SetBytesProcessed(bytes);
}
BENCHMARK(AppendNested)->Name("Growth_AppendNested/qvcommon")->Arg(300)->Arg(3000);

// A lookup, whatever the number of elements beside: the second line is to stay near the first.
void Lookup(benchmark::State& state) {
    CXmlSection writer, section;
    const int count = static_cast<int>(state.range());
    for (int i = 0; i < count; ++i) writer.AddInteger("Item", i, 1);
    section.SetRawXml(writer.GetRawXml());
    int value = 0, index = 0;
    for (auto _ : state) {
        section.GetInteger("Item", value, index = (index + 7) % count);
        if (value != index) state.SkipWithError("wrong item");
    }
}
BENCHMARK(Lookup)->Name("Growth_Lookup/qvcommon")->Arg(100)->Arg(100000);

}  // namespace
