// Reads and writes sections of 10 MB, compared with the parsers and the writer of two XML libraries.
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

// Each tag of a record on its own line.
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

// Each record as its own section, added to the outer one.
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

// The tree already exists.
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

}  // namespace
