#include <gmock/gmock.h>

#include "qvcommon/ClassFactory.h"
#include "qvcommon/XmlDomElement.h"
#include "qvcommon/XmlException.h"
#include "tests/support/ComCode.h"
#include "tests/support/Raised.h"

namespace {

int g_alive = 0;

class Wrapper : public CXmlDomElement {
public:
    Wrapper() { ++g_alive; }
    ~Wrapper() override { --g_alive; }
};
class BigWrapper : public Wrapper {};

class XmlDomElement : public ::testing::Test {
protected:
    XmlDomElement() {
        CQVClassFactory::Register<Wrapper>("a");
        CQVClassFactory::Register<Wrapper>("b");
        CQVClassFactory::Register<BigWrapper>("a typ=\"big\"");
        CQVClassFactory::Register("wrong", [] { return static_cast<CObject*>(new CStringArray); });
    }
    ~XmlDomElement() override {
        for (const char* const key : {"a", "b", "a typ=\"big\"", "wrong"})
            EXPECT_TRUE(CQVClassFactory::Unregister(key));
        EXPECT_FALSE(CQVClassFactory::CreateObject("a"));
    }

    std::vector<std::string> Keys() {
        std::vector<std::string> keys;
        for (CXmlDomElement* const child : root.GetChildren()) keys.push_back(child->GetFullTag().AsStd());
        return keys;
    }

    CXmlDomElement root;
};

using ::testing::ElementsAre;

TEST_F(XmlDomElement, WrapsElementsOfRegisteredClasses) {
    EXPECT_EQ(root.LoadXml("<r>t<a/><none/><!--c--><a typ='big'/><a typ='odd'/><wrong/><b><a>x</a></b></r>"), 1);
    EXPECT_THAT(Keys(), ElementsAre("a", "a typ=\"big\"", "b"));
    EXPECT_TRUE(dynamic_cast<BigWrapper*>(root.GetChildren()[1]));
    CXmlDomElement* const inner = root.GetElement("b/a");
    ASSERT_TRUE(inner);
    EXPECT_EQ(inner, root.GetChildren()[2]->GetChildren()[0]);
    EXPECT_EQ(inner->GetParent(), root.GetChildren()[2]);
    EXPECT_EQ(inner->GetNodePath(&root), "b[0]/a[0]");
    EXPECT_EQ(inner->GetElementMask(), "/r/b/a");
    EXPECT_EQ(inner->GetElement("/r/b", 0, 1), root.GetChildren()[2]);
    EXPECT_EQ(root.GetElement("none"), nullptr);
    EXPECT_TRUE(root.IsDocElement() && !inner->IsDocElement());
    CXmlDomElement* const made = root.GetElement("r/b", 2, 1, 1);
    ASSERT_TRUE(made);
    EXPECT_EQ(made->GetNodePath(), "/r[0]/b[2]");
    CString text;
    EXPECT_EQ(inner->GetString(".", text), 1);
    EXPECT_EQ(text, "x");
}

TEST_F(XmlDomElement, ReusesWrappersOfKeptElements) {
    root.LoadXml("<r><a>1</a><b>2</b><a>3</a></r>");
    const CXmlDomElementArray before = root.GetChildren();
    EXPECT_EQ(&root.GetChildren(), &root.GetChildren());
    EXPECT_EQ(root.SetXml("<b>4</b><a>3</a><a typ='big'/>"), 1);
    ASSERT_THAT(Keys(), ElementsAre("b", "a", "a typ=\"big\""));
    EXPECT_EQ(root.GetChildren()[0], before[1]);
    EXPECT_EQ(root.GetChildren()[1], before[2]);
    EXPECT_EQ(g_alive, 3);
    EXPECT_EQ(root.GetXml(), "<r><b>4</b><a>3</a><a typ=\"big\"/></r>");
    EXPECT_EQ(root.MoveChildUp(1), 1);
    EXPECT_EQ(root.MoveChildUp(0) + root.MoveChildUp(9), 0);
    EXPECT_EQ(root.GetXml(), "<r><a>3</a><b>4</b><a typ=\"big\"/></r>");
    EXPECT_EQ(root.AppendXml("<x>t<b>5</b></x>", 0)->GetXml(), "<b>5</b>");
    EXPECT_EQ(root.RemoveChild(root.GetChildren()[0]), 1);
    EXPECT_EQ(root.RemoveChild(&root) + root.RemoveChild(-1), 0);
    EXPECT_EQ(root.RemoveNodes("a/@typ"), 1);
    EXPECT_EQ(root.RemoveNodes("none"), 0);
    EXPECT_EQ(root.RemoveNodes("b[0]"), 1);
    EXPECT_EQ(root.GetXml(), "<r><a/>t<b>5</b></r>");
    EXPECT_EQ(root.GetChildren().GetSize(), 2);
    CXmlDomElement other;
    other.LoadXml("<z k='1'><b>5</b><a/></z>");
    root.SyncNode(other);
    EXPECT_EQ(root.GetXml(), "<r k=\"1\"><b>5</b><a/></r>");
    EXPECT_EQ(root.GetChildren().GetSize(), 2);
    EXPECT_EQ(root.SetString(".", "text"), 1);
    EXPECT_EQ(root.GetChildren().GetSize(), 0);
    root.AppendXml("<a/>", 1);
    root.RemoveChildren();
    EXPECT_EQ(root.GetXml(), "<r k=\"1\">text</r>");
    EXPECT_EQ(g_alive, 0);
}

TEST_F(XmlDomElement, RemovesNodesSelectedByPath) {
    struct Row {
        const char *document, *path, *left;
        BOOL removed;
    };
    for (const Row& row :
         {Row{"<r><v n='1' m='2'/><v n='3' m='1'/></r>", "v/@*[.='1']", "<r><v m=\"2\"/><v n=\"3\"/></r>", 1},
          Row{"<r><a x='1' y='2'/><b x='3' y='4'/></r>", "a/@x|b/@y", "<r><a y=\"2\"/><b x=\"3\"/></r>", 1},
          Row{"<r>t<a/><!--c--><b><a/></b></r>", ".//a|text()", "<r><!--c--><b/></r>", 1},
          Row{"<r><a><b/></a></r>", "a|a/b", "<r/>", 1}, Row{"<r/>", "@x|y", "<r/>", 0}}) {
        root.LoadXml(row.document);
        EXPECT_EQ(root.RemoveNodes(row.path), row.removed) << row.path;
        EXPECT_EQ(root.GetXml(), row.left) << row.path;
    }
    root.LoadXml("<r><a x='1' y='2'/><b y='3'/></r>");
    EXPECT_EQ(CXmlHelper::DeleteXmlPath(root.GetDomDoc(), "r/b/@y|r/a/@y"), "/r[0]/a[0]/@y");
    EXPECT_EQ(root.GetXml(), "<r><a x=\"1\"/><b y=\"3\"/></r>");
}

// Equal names are not equal elements if their namespaces differ.
TEST_F(XmlDomElement, NewContentKeepsItsNamespaces) {
    const struct {
        const char *document, *content, *result;
    } rows[] = {
        {"<r xmlns='u'><a>1</a></r>", "<a>2</a><a>3</a>", "<r xmlns=\"u\"><a xmlns=\"\">2</a><a xmlns=\"\">3</a></r>"},
        {"<r><a xmlns='u'><b/></a></r>", "<a><b/></a>", "<r><a><b/></a></r>"},
    };
    for (const auto& [document, content, result] : rows) {
        root.LoadXml(document);
        EXPECT_EQ(root.SetXml(content), 1);
        EXPECT_EQ(root.GetXml(), result);
    }
    root.LoadXml("<r xmlns:p='u'><a xmlns:p='w'/></r>");
    root.SetXml("<a xmlns:p='v' p:k='1'/>");
    EXPECT_EQ(root.GetDomElement().selectSingleNode("a/@p:k").get_namespaceURI(), "v");
    CXmlDomElement other;
    other.LoadXml("<r xml:lang='de'/>");
    for (int i = 0; i < 2; ++i) root.SyncNode(other);
    const CString before = root.GetXml();
    other.LoadXml("<r xmlns:p='v' k='1' p:l='2'><b/></r>");
    EXPECT_EQ(ComCodeOf([&] { root.SyncNode(other); }), _com_error::kInvalidArg);
    EXPECT_EQ(root.GetXml(), before);
}

TEST_F(XmlDomElement, UpdatesWrappersOutsideTheChangedOne) {
    root.LoadXml("<r><a/><b><a/></b><b/></r>");
    CXmlDomElement* const first = root.GetElement("a");
    EXPECT_EQ(root.GetElement("b")->GetChildren().GetSize(), 1);
    EXPECT_EQ(first->SetString("../b", "text"), 1);
    EXPECT_EQ(g_alive, 4);
    EXPECT_EQ(root.GetElement("b")->GetChildren().GetSize(), 0);
    EXPECT_EQ(first->RemoveNodes("../b[1]|."), 1);
    EXPECT_THAT(Keys(), ElementsAre("b"));
    EXPECT_EQ(g_alive, 1);
}

TEST_F(XmlDomElement, UnchangedWhenFactoryThrows) {
    root.LoadXml("<r><a>1</a><a>2</a></r>");
    const CXmlDomElementArray before = root.GetChildren();
    CQVClassFactory::Register("bad", []() -> CObject* { throw 7; });
    EXPECT_EQ(root.SetXml("<b/><bad/>"), 1);
    for (int i = 0; i < 2; ++i) EXPECT_THROW(root.GetChildren(), int);
    EXPECT_EQ(g_alive, 2);
    EXPECT_TRUE(CQVClassFactory::Unregister("bad"));
    EXPECT_THAT(Keys(), ElementsAre("b"));
    EXPECT_EQ(g_alive, 1);
}

TEST_F(XmlDomElement, LoadPreservesDocumentOfGivenElement) {
    const auto element = CXmlHelper::GetDocumentElement("<r><a>1</a></r>");
    root.SetElement(element);
    EXPECT_EQ(root.GetElement("/r/a", 0, 1), root.GetChildren()[0]);
    EXPECT_EQ(root.LoadXml("<z><b/></z>"), 1);
    EXPECT_EQ(root.GetXml(), "<z><b/></z>");
    EXPECT_EQ(element.get_ownerDocument().get_xml(), "<r><a>1</a></r>");
}

TEST_F(XmlDomElement, EmptyAfterParseError) {
    EXPECT_EQ(root.LoadXml("<a>"), 0);
    EXPECT_EQ(root.HasDomElement(), 0);
    EXPECT_EQ(ComCodeOf([&] { root.GetChildren(); }), _com_error::kPointer);
    EXPECT_EQ(ComCodeOf([&] { root.GetDomElement(); }), _com_error::kPointer);
    const auto problem = root.GetDomDoc().get_parseError();
    const auto raised = Raised<CXmlException>([&] { CXmlException::Throw(problem, 48, 9); });
    ASSERT_TRUE(raised);
    EXPECT_EQ(raised->GetText(), problem.get_reason());
    EXPECT_EQ(raised->GetErrorCode(), problem.get_errorCode());
    EXPECT_TRUE(raised->GetSeverity() == 48 && raised->GetDetail() == 9);
    const auto own = Raised<CVorbexException>([] { CXmlException::Throw("text", 16, 3, 4); });
    ASSERT_TRUE(own && own->IsKindOf(RUNTIME_CLASS(CXmlException)));
    EXPECT_EQ(static_cast<CXmlException&>(*own).GetErrorCode(), 3);
    EXPECT_EQ(own->GetCode(), 0);
}

}  // namespace
