// Documents and sections with more elements, attributes and depth.
#include <cmath>

#include "benchmarks/support/Growth.h"
#include "qvcommon/HistoryMgr.h"
#include "qvcommon/XmlDomElement.h"
#include "qvcommon/XmlSection.h"

namespace {

CString List(int count) {
    CString xml = "<list>";
    for (int i = 0; i < count; ++i) xml += "<item><v>x</v></item>";
    return xml += "</list>";
}

template <int Mode>
void GetStringArray(benchmark::State& state) {
    const auto root = CXmlHelper::GetDocumentElement(List(static_cast<int>(state.range())));
    for (auto _ : state) {
        CStringArray values;
        CXmlHelper::GetStringArray(root, Mode ? "item[%d]/v" : "item", values, Mode);
        if (values.GetSize() != state.range()) state.SkipWithError("items are missing");
    }
}
QV_GROWTH(ArrayByIndex, GetStringArray<0>, 2500);
QV_GROWTH(ArrayByFormat, GetStringArray<1>, 2500);

void CreateXmlPath(benchmark::State& state) {
    const CString path = "list/item[" + CString(std::to_string(state.range() - 1)) + "]";
    for (auto _ : state) CXmlHelper::CreateXmlPath(CXmlHelper::CreateDocument(), path, "v");
}
QV_GROWTH(CreateXmlPath, CreateXmlPath, 2500);

// Each move examines the declarations in scope once.
void MoveUnderDeclarations(benchmark::State& state) {
    std::string text = "<r";
    for (int i = 0; i < 1000; ++i) text += " xmlns:n" + std::to_string(i) + "='u" + std::to_string(i) + "'";
    const auto root = CXmlHelper::GetDocumentElement(text + "><n999:a/></r>");
    const auto child = root.get_firstChild();
    for (auto _ : state)
        for (int i = 0; i < state.range(); ++i) root.appendChild(child);
}
QV_GROWTH(MoveUnderDeclarations, MoveUnderDeclarations, 2500);

void SetAttributes(benchmark::State& state) {
    for (auto _ : state) {
        const auto root = CXmlHelper::GetDocumentElement("<r/>");
        for (int i = 0; i < state.range(); ++i) root.setAttribute("k" + std::to_string(i), "v");
    }
}
QV_GROWTH(SetAttributes, SetAttributes, 2500);

// Between elements of one document.
void SyncAttributes(benchmark::State& state) {
    const auto document = CXmlHelper::GetDocumentElement("<r/>").get_ownerDocument();
    const auto from = document.get_documentElement();
    for (int i = 0; i < state.range(); ++i) from.setAttribute("k" + std::to_string(i), "v");
    for (auto _ : state) CXmlDomElement::SyncNode(document.createElement("r"), from);
}
QV_GROWTH(SyncAttributes, SyncAttributes, 2500);

void AddElements(benchmark::State& state) {
    for (auto _ : state) {
        const auto root = CXmlHelper::GetDocumentElement("<r/>");
        for (int i = 0; i < state.range(); ++i) CXmlHelper::AddElement(root, "item", "x");
    }
}
QV_GROWTH(AddElements, AddElements, 2500);

// Nested as deep as elements may be.
void AddChain(benchmark::State& state) {
    for (auto _ : state) {
        auto inner = CXmlHelper::GetDocumentElement("<r/>");
        for (int i = 0; i < state.range(); ++i) inner = CXmlHelper::AddElement(inner, "item", "");
    }
}
QV_GROWTH(AddChain, AddChain, 60);

// One element with many children, or with many attributes.
CString Wide(const benchmark::State& state, bool attributes) {
    CString xml = attributes ? "<list" : "<list>";
    for (std::int64_t i = 0; i < state.range(); ++i)
        xml += attributes ? " k" + std::to_string(i) + "='v'" : "<item k='v'>x</item>";
    return xml += attributes ? "/>" : "</list>";
}

void Load(benchmark::State& state, bool attributes) {
    const CString xml = Wide(state, attributes);
    const auto document = CXmlHelper::CreateDocument();
    for (auto _ : state)
        if (!document.loadXML(xml)) state.SkipWithError("not loaded");
}
QV_GROWTH_OF(LoadElements, Load, 10000, false);
QV_GROWTH_OF(LoadAttributes, Load, 2500, true);

void Save(benchmark::State& state, bool attributes) {
    const auto root = CXmlHelper::GetDocumentElement(Wide(state, attributes));
    for (auto _ : state) benchmark::DoNotOptimize(root.get_xml());
}
QV_GROWTH_OF(SaveElements, Save, 10000, false);
QV_GROWTH_OF(SaveAttributes, Save, 10000, true);

// Removes each result of a search from its document.
void RemoveResults(benchmark::State& state) {
    const CString xml = Wide(state, false);
    for (auto _ : state) {
        const auto root = CXmlHelper::GetDocumentElement(xml);
        for (const auto& item : root.selectNodes("item")) root.removeChild(item);
    }
}
QV_GROWTH(RemoveResults, RemoveResults, 2500);

void SortElements(benchmark::State& state) {
    CString xml = "<list>";
    for (std::int64_t i = 0; i < state.range(); ++i)
        xml += CXmlHelper::MakeElement("v", std::to_string(i * 7919 % 10007));
    xml += "</list>";
    for (auto _ : state) CXmlHelper::Sort(CXmlHelper::GetDocumentElement(xml), "v", 0);
}
QV_GROWTH(SortElements, SortElements, 2500);

void VisitPages(benchmark::State& state) {
    for (auto _ : state) {
        CHistoryMgr history;
        for (std::int64_t i = 0; i < state.range(); ++i) history.UpdateHistory(std::to_string(i).c_str(), "title");
    }
}
QV_GROWTH(VisitPages, VisitPages, 2500);

void WriteSection(benchmark::State& state) {
    for (auto _ : state) {
        CXmlSection section("List");
        for (std::int64_t i = 0; i < state.range(); ++i) section.AddString("Item", "a text & more");
        benchmark::DoNotOptimize(section.GetRawXml());
    }
}
QV_GROWTH(WriteSection, WriteSection, 10000);

// Indentation makes the text grow with the square of the depth: twice the depth is four times the text.
void AppendNested(benchmark::State& state) {
    const auto depth = static_cast<int>(std::sqrt(state.range()));
    for (auto _ : state) {
        CXmlSection section;
        for (int i = 0; i < depth; ++i) section.AppendRawXml("<a>", 1, 0);
        for (int i = 0; i < depth; ++i) section.AppendRawXml("</a>", 0, 1);
        benchmark::DoNotOptimize(section.GetRawXml());
    }
}
QV_GROWTH(AppendNested, AppendNested, 1 << 14);

// Looks up each element once, in an order that does not help the lookup.
void LookUp(benchmark::State& state) {
    CXmlSection writer, section;
    const int count = static_cast<int>(state.range());
    for (int i = 0; i < count; ++i) writer.AddInteger("Item", i, 1);
    section.SetRawXml(writer.GetRawXml());
    for (auto _ : state)
        for (int i = 0, value = 0, index = 0; i < count; ++i) {
            section.GetInteger("Item", value, index = (index + 7) % count);
            if (value != index) state.SkipWithError("wrong item");
        }
}
QV_GROWTH(LookUp, LookUp, 10000);

}  // namespace
