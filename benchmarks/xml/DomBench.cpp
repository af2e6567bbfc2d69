// Loads and walks documents, and reads values by path, compared with two XML libraries.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <libxml/xpath.h>

#include <pugixml.hpp>
#include <string_view>

#include "qvcommon/XmlDomElement.h"

namespace {

// A hundred groups of a hundred elements.
const std::string& Document() {
    static const std::string text = [] {
        std::string xml = "<list>";
        for (int group = 0; group < 100; ++group) {
            xml += "<group>";
            for (int item = 0; item < 100; ++item)
                xml += "<item id='" + std::to_string(item) + "'><v>" + std::to_string(group * item) + "</v></item>";
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

// Typical saved data: attributes, lines, texts with references.
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

xmlDoc* Parsed(const std::string& text) {
    return xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, 0);
}

void Load_libxml2(benchmark::State& state, const std::string& text) {
    for (auto _ : state) xmlFreeDoc(Parsed(text));
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

// Loads the document and reads the attribute and the text of each item.
std::size_t Characters() {
    std::size_t count = 0;
    for (int group = 0; group < 100; ++group)
        for (int item = 0; item < 100; ++item)
            count += std::to_string(item).size() + std::to_string(group * item).size();
    return count;
}

void CheckRead(benchmark::State& state, std::size_t count) {
    static const std::size_t expected = Characters();
    if (count != expected) state.SkipWithError("other texts");
}

void Walk_QvCommon(benchmark::State& state) {
    const auto document = CXmlHelper::CreateDocument();
    CString id;
    for (auto _ : state) {
        int read = 0;
        document.loadXML(Document());
        const auto root = document.get_documentElement();
        for (auto group = root.get_firstChild(); group; group = group.get_nextSibling())
            for (auto item = group.get_firstChild(); item; item = item.get_nextSibling()) {
                MSXML2::IXMLDOMElement(item).getAttribute("id", id);
                read += id.GetLength() + item.get_text().GetLength();
            }
        CheckRead(state, static_cast<std::size_t>(read));
    }
}
BENCHMARK(Walk_QvCommon)->Name("LoadAndWalk/QvCommon");

void Walk_libxml2(benchmark::State& state) {
    for (auto _ : state) {
        std::size_t read = 0;
        xmlDoc* const doc = Parsed(Document());
        for (xmlNode* group = xmlDocGetRootElement(doc)->children; group; group = group->next)
            for (xmlNode* item = group->children; item; item = item->next)
                for (xmlChar* const text :
                     {xmlGetProp(item, reinterpret_cast<const xmlChar*>("id")), xmlNodeGetContent(item)}) {
                    read += static_cast<std::size_t>(xmlStrlen(text));
                    xmlFree(text);
                }
        xmlFreeDoc(doc);
        CheckRead(state, read);
    }
}
BENCHMARK(Walk_libxml2)->Name("LoadAndWalk/libxml2");

void Walk_pugixml(benchmark::State& state) {
    for (auto _ : state) {
        std::size_t read = 0;
        pugi::xml_document doc;
        doc.load_buffer(Document().data(), Document().size());
        for (const pugi::xml_node group : doc.document_element())
            for (const pugi::xml_node item : group)
                read += std::string_view(item.attribute("id").value()).size() +
                        std::string_view(item.child_value("v")).size();
        CheckRead(state, read);
    }
}
BENCHMARK(Walk_pugixml)->Name("LoadAndWalk/pugixml");

}  // namespace
