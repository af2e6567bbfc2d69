// Random operations on trees, checked one by one; under the address sanitizer this shows whether a handle ever reads freed
// memory. QV_XML_OPERATIONS sets their number.
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/XmlTreeModel.h"

namespace {

using MSXML2::IXMLDOMDocument;
using MSXML2::IXMLDOMElement;

// A DOM that accepts undeclared prefixes also frees nodes too early that were removed or moved to another document. With
// such a DOM nothing is freed before the end.
bool KeepsWhatHandlesNeed() {
    return !CXmlHelper::CreateDocument().loadXML("<p:r/>");
}

TEST(XmlTrees, RandomOperationsMatchModel) {
    const char* const wanted = std::getenv("QV_XML_OPERATIONS");
    const int operations = wanted ? std::atoi(wanted) : 100'000;
    const bool frees = KeepsWhatHandlesNeed();
    for (unsigned seed = 1; seed <= 4; ++seed) {
        XmlTreeModel model(seed, frees);
        for (int i = 0; i < operations / 4 && !::testing::Test::HasFailure(); ++i) model.Step();
        ASSERT_FALSE(::testing::Test::HasFailure()) << "seed " << seed;
    }
}

TEST(XmlTrees, DetachedNodesKeepNamespace) {
    const IXMLDOMDocument document = CXmlHelper::CreateDocument();
    ASSERT_TRUE(document.loadXML("<p:q xmlns:p='vvvv'><x xmlns='u'/></p:q>"));
    IXMLDOMElement q = document.get_documentElement();
    const IXMLDOMElement x(q.get_firstChild());
    document.removeChild(q);
    CXmlHelper::SetAttribute(x, "p:r", "value");
    q.removeChild(x);
    q = nullptr;
    const CString markup = x.get_xml();
    const IXMLDOMElement again = CXmlHelper::GetDocumentElement(markup);
    ASSERT_TRUE(again) << markup.AsStd();
    EXPECT_EQ(again.selectSingleNode("@p:r").get_namespaceURI(), "vvvv");
    EXPECT_EQ(again.get_namespaceURI(), "u");
}

// A new element often gets the address of the freed one.
TEST(XmlTrees, NewElementsAreIndependentOfFreedOnes) {
    const IXMLDOMDocument document = CXmlHelper::CreateDocument();
    for (const char* const markup : {"", "<r/>"}) {
        document.loadXML(markup);
        for (const char* const value : {"1", "2", "3"}) {
            const IXMLDOMElement element = document.createElement("e");
            CXmlHelper::SetAttribute(element, "name", value);
            EXPECT_EQ(element.get_xml(), CString("<e name=\"") + value + "\"/>");
        }
    }
}

}  // namespace
