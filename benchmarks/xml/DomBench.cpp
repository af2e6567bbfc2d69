// Values by path, beside the evaluators of two XML libraries.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <libxml/xpath.h>

#include <pugixml.hpp>

#include "qvcommon/XmlDomElement.h"

namespace {

// A hundred groups of a hundred elements.
const std::string& Document() {
    static const std::string text = [] {
        std::string xml = "<list>";
        for (int group = 0; group < 100; ++group) {
            xml += "<group>";
            for (int item = 0; item < 100; ++item) xml += "<item><v>" + std::to_string(group * item) + "</v></item>";
            xml += "</group>";
        }
        return xml += "</list>";
    }();
    return text;
}

void GetString_QvCommon(benchmark::State& state) {
    const auto root = CXmlHelper::GetDocumentElement(Document());
    CString value;
    for (auto _ : state) benchmark::DoNotOptimize(CXmlHelper::GetString(root, "group[50]/item[50]/v[0]", value));
}
BENCHMARK(GetString_QvCommon)->Name("GetString/QvCommon");

void GetString_libxml2(benchmark::State& state) {
    xmlDoc* const doc = xmlReadMemory(Document().data(), static_cast<int>(Document().size()), nullptr, nullptr, 0);
    xmlXPathContext* const context = xmlXPathNewContext(doc);
    context->node = xmlDocGetRootElement(doc);
    for (auto _ : state) {
        const auto* const path = reinterpret_cast<const xmlChar*>("group[51]/item[51]/v[1]");
        xmlXPathObject* const found = xmlXPathEval(path, context);
        xmlChar* const text = xmlNodeGetContent(found->nodesetval->nodeTab[0]);
        benchmark::DoNotOptimize(text);
        xmlFree(text);
        xmlXPathFreeObject(found);
    }
    xmlXPathFreeContext(context);
    xmlFreeDoc(doc);
}
BENCHMARK(GetString_libxml2)->Name("GetString/libxml2");

void GetString_pugixml(benchmark::State& state) {
    pugi::xml_document doc;
    doc.load_string(Document().c_str());
    const pugi::xml_node root = doc.document_element();
    for (auto _ : state) {
        CString value = root.select_node("group[51]/item[51]/v[1]").node().text().get();
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(GetString_pugixml)->Name("GetString/pugixml");

// What programs save: attributes, lines, texts with references.
const std::string& SavedDocument() {
    static const std::string text = [] {
        std::string xml = "<?xml version=\"1.0\"?>\n<settings>\n";
        for (int i = 0; i < 10'000; ++i)
            xml += "  <entry id=\"" + std::to_string(i) + "\" type=\"text\">\n    <name>Caf\u00E9 &amp; bar</name>\n" +
                   "    <value>no. " + std::to_string(i * 7) + "</value>\n  </entry>\n";
        return xml += "</settings>\n";
    }();
    return text;
}

void Load_QvCommon(benchmark::State& state, const std::string& text) {
    const auto document = CXmlHelper::CreateDocument();
    for (auto _ : state)
        if (!document.loadXML(text)) state.SkipWithError("not loaded");
}

void Load_libxml2(benchmark::State& state, const std::string& text) {
    const int size = static_cast<int>(text.size());
    for (auto _ : state) xmlFreeDoc(xmlReadMemory(text.data(), size, nullptr, nullptr, 0));
}

void Load_pugixml(benchmark::State& state, const std::string& text) {
    for (auto _ : state) {
        pugi::xml_document doc;
        benchmark::DoNotOptimize(doc.load_buffer(text.data(), text.size()));
    }
}

#define QV_LOAD(group, text)                                                 \
    BENCHMARK_CAPTURE(Load_QvCommon, group, text)->Name(#group "/QvCommon"); \
    BENCHMARK_CAPTURE(Load_libxml2, group, text)->Name(#group "/libxml2");   \
    BENCHMARK_CAPTURE(Load_pugixml, group, text)->Name(#group "/pugixml")

QV_LOAD(Load, Document());
QV_LOAD(LoadSaved, SavedDocument());

CString List(int count) {
    CString xml = "<list>";
    for (int i = 0; i < count; ++i) xml += "<item><v>x</v></item>";
    return xml += "</list>";
}

// Ten times the items: the second line of each group is to stay near 10 times the first.
template <int Mode>
void GetStringArray(benchmark::State& state) {
    const auto root = CXmlHelper::GetDocumentElement(List(static_cast<int>(state.range())));
    for (auto _ : state) {
        CStringArray values;
        CXmlHelper::GetStringArray(root, Mode ? "item[%d]/v" : "item", values, Mode);
        if (values.GetSize() != state.range()) state.SkipWithError("items are missing");
    }
}
BENCHMARK(GetStringArray<0>)->Name("Growth_ArrayByIndex/qvcommon")->Arg(1000)->Arg(10000);
BENCHMARK(GetStringArray<1>)->Name("Growth_ArrayByFormat/qvcommon")->Arg(1000)->Arg(10000);

void CreateXmlPath(benchmark::State& state) {
    const CString path = "list/item[" + CString(std::to_string(state.range() - 1)) + "]";
    for (auto _ : state) CXmlHelper::CreateXmlPath(CXmlHelper::CreateDocument(), path, "v");
}
BENCHMARK(CreateXmlPath)->Name("Growth_CreateXmlPath/qvcommon")->Arg(1000)->Arg(10000);

// Each move looks at the declarations in scope once.
void MoveUnderDeclarations(benchmark::State& state) {
    std::string text = "<r";
    for (int i = 0; i < 1000; ++i) text += " xmlns:n" + std::to_string(i) + "='u" + std::to_string(i) + "'";
    const auto root = CXmlHelper::GetDocumentElement(text + "><n999:a/></r>");
    const auto child = root.get_firstChild();
    for (auto _ : state)
        for (int i = 0; i < state.range(); ++i) root.appendChild(child);
}
BENCHMARK(MoveUnderDeclarations)->Name("Growth_MoveUnderDeclarations/qvcommon")->Arg(1000)->Arg(10000);

void SetAttributes(benchmark::State& state) {
    for (auto _ : state) {
        const auto root = CXmlHelper::GetDocumentElement("<r/>");
        for (int i = 0; i < state.range(); ++i) root.setAttribute("k" + std::to_string(i), "v");
    }
}
BENCHMARK(SetAttributes)->Name("Growth_SetAttributes/qvcommon")->Arg(1000)->Arg(10000);

// Between elements of one document.
void SyncAttributes(benchmark::State& state) {
    const auto document = CXmlHelper::GetDocumentElement("<r/>").get_ownerDocument();
    const auto from = document.get_documentElement();
    for (int i = 0; i < state.range(); ++i) from.setAttribute("k" + std::to_string(i), "v");
    for (auto _ : state) CXmlDomElement::SyncNode(document.createElement("r"), from);
}
BENCHMARK(SyncAttributes)->Name("Growth_SyncAttributes/qvcommon")->Arg(1000)->Arg(10000);

void AddElements(benchmark::State& state) {
    for (auto _ : state) {
        const auto root = CXmlHelper::GetDocumentElement("<r/>");
        for (int i = 0; i < state.range(); ++i) CXmlHelper::AddElement(root, "item", "x");
    }
}
BENCHMARK(AddElements)->Name("Growth_AddElements/qvcommon")->Arg(1000)->Arg(10000);

// In each other, as deep as elements may be.
void AddChain(benchmark::State& state) {
    for (auto _ : state) {
        auto inner = CXmlHelper::GetDocumentElement("<r/>");
        for (int i = 0; i < state.range(); ++i) inner = CXmlHelper::AddElement(inner, "item", "");
    }
}
BENCHMARK(AddChain)->Name("Growth_AddChain/qvcommon")->Arg(25)->Arg(250);

}  // namespace
