// Random operations on trees, beside a model of what they do; under the address sanitizer this shows whether a handle ever
// reads what is gone. QV_XML_OPERATIONS sets their number, for a night.
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/XmlTreeModel.h"

namespace {

using MSXML2::IXMLDOMDocument;
using MSXML2::IXMLDOMElement;

#if defined(__SANITIZE_ADDRESS__)
constexpr int kOperations = 1'000'000;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr int kOperations = 1'000'000;
#else
constexpr int kOperations = 100'000;
#endif
#else
constexpr int kOperations = 100'000;
#endif

int Operations() {
    if (const char* const wanted = std::getenv("QV_XML_OPERATIONS")) return std::atoi(wanted);
    return kOperations;
}

// A DOM that takes undeclared prefixes also frees too early what has moved to another document or was taken out:
// on such a DOM nothing is freed here before the end.
bool KeepsWhatHandlesNeed() {
    return !CXmlHelper::CreateDocument().loadXML("<p:r/>");
}

TEST(XmlTrees, AreWhatTheOperationsMadeThem) {
    const int operations = Operations();
    const bool frees = KeepsWhatHandlesNeed();
    for (unsigned seed = 1; seed <= 4; ++seed) {
        XmlTreeModel model(seed, frees);
        for (int i = 0; i < operations / 4 && !::testing::Test::HasFailure(); ++i) model.Step();
        ASSERT_FALSE(::testing::Test::HasFailure()) << "seed " << seed;
    }
}

TEST(XmlTrees, KeepTheMeaningOfAPrefixWhoseElementIsGone) {
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

}  // namespace
