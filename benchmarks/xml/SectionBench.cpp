// Sections of 10 MB, read and written, beside the parsers and the writer of two XML libraries.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>

#include <pugixml.hpp>
#include <sstream>

#include "qvcommon/XmlSection.h"

namespace {

constexpr std::size_t kSize = 10 << 20;
constexpr std::string_view kName = "Report of the quarter & more", kNote = "12,5 <high>";

void AddRecord(CXmlSection& section, int number) {
    CXmlSection record("Record");
    record.AddInteger("Number", number + 1);
    record.AddString("Name", kName);
    record.AddString("Note", kNote);
    record.AddStringArray("Values", {"one", "two", "three"});
    section.AddSection(record);
}

int Records() {
    CXmlSection one;
    AddRecord(one, 1000);
    return static_cast<int>(kSize) / one.GetRawXml().GetLength();
}

CString WriteAll() {
    CXmlSection section;
    section.AppendRawXml("<Root>", 1, 0);
    for (int i = 0, count = Records(); i < count; ++i) AddRecord(section, i);
    section.AppendRawXml("</Root>", 0, 1);
    return section.GetRawXml();
}

const CString kText = WriteAll();

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
    for (auto _ : state) benchmark::DoNotOptimize(WriteAll());
    Counted(state);
}
BENCHMARK(Write_QvCommon)->Name("Write/QvCommon");

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
