#include <libxml/xmlsave.h>

#include <limits>
#include <memory>
#include <new>

#include "xml/dom/Characters.h"
#include "xml/dom/libxml2/Internals.h"
#include "xml/dom/libxml2/Problem.h"

namespace qv::dom {
namespace {

using MSXML2::IXMLDOMParseError;

struct FreeDoc {
    void operator()(xmlDoc* doc) const { xmlFreeDoc(doc); }
};
struct FreeContext {
    void operator()(xmlParserCtxt* context) const { xmlFreeParserCtxt(context); }
};
using Doc = std::unique_ptr<xmlDoc, FreeDoc>;
using Context = std::unique_ptr<xmlParserCtxt, FreeContext>;

Doc NewDoc() {
    PrepareLibrary();
    Doc doc(xmlNewDoc(Xml("1.0")));
    if (!doc) throw std::bad_alloc();
    return doc;
}

// A subset that the screening did not see, whatever its encoding, ends here.
void RefuseEntity(void* data, const xmlChar*, int, const xmlChar*, const xmlChar*, xmlChar*) {
    xmlStopParser(static_cast<xmlParserCtxt*>(data));
}

bool IsBlankText(const xmlNode* node) {
    return node->type == XML_TEXT_NODE && IsBlank(View(node->content));
}

bool KeepsSpace(xmlNode* node) {
    return xmlNodeGetSpacePreserve(node) == 1;
}

void DropBlanks(xmlDoc* doc) {
    const auto* const top = reinterpret_cast<const xmlNode*>(doc);
    for (xmlNode* node = doc->children; node;) {
        xmlNode* const blank = IsBlankText(node) && !KeepsSpace(node->parent) ? node : nullptr;
        node = NextInSubtree(top, node);
        if (!blank) continue;
        xmlUnlinkNode(blank);
        xmlFreeNode(blank);
    }
}

bool Load(Node& document, std::string_view bytes, const char* encoding, int options) {
    if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        SetProblem(document, {_com_error::kOutOfMemory, "The text is too long", 0, 0});
        return false;
    }
    PrepareLibrary();
    const Silence silence;
    const Context context(xmlNewParserCtxt());
    if (!context) throw std::bad_alloc();
    FirstError first;
    context->_private = &first;
    context->sax->serror = FirstError::Take;
    context->sax->entityDecl = RefuseEntity;
    // Names are shared within a document only; depth and length were looked at before.
    Doc doc(xmlCtxtReadMemory(context.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr, encoding,
                              options | XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_COMPACT));
    if (!doc || !context->wellFormed || first.problem.get_errorCode() != 0) {
        if (first.problem.get_errorCode() == 0) first.problem = {_com_error::kFail, "The document is empty", 1, 1};
        SetProblem(document, first.problem);
        return false;
    }
    if (!document.tree->keepSpace) DropBlanks(doc.get());
    ReplaceTree(document, doc.release());
    return true;
}

}  // namespace

Node* CreateDocument(HRESULT& error) {
    error = 0;
    auto* const tree = new Tree{.doc = NewDoc().release(), .problem = {}};
    return Refer(*tree, reinterpret_cast<xmlNode*>(tree->doc));
}

// Loads never run in the background here, and nothing is validated.
void SetAsync(Node&, bool) {}
void SetValidate(Node&, bool) {}

void SetKeepSpace(Node& document, bool keep) {
    document.tree->keepSpace = keep;
}

void SetProblem(Node& document, const IXMLDOMParseError& problem) {
    ReplaceTree(document, NewDoc().release());
    document.tree->problem = problem;
}

IXMLDOMParseError Problem(Node& document) {
    return document.tree->problem;
}

bool LoadText(Node& document, std::string_view text) {
    return Load(document, ToUtf8(text), "UTF-8", XML_PARSE_IGNORE_ENC);
}

bool LoadBytes(Node& document, std::string_view bytes) {
    return Load(document, bytes, nullptr, 0);
}

std::string Save(Node& document) {
    const Silence silence;
    xmlChar* text = nullptr;
    int size = 0;
    const xmlDoc* const doc = document.tree->doc;
    const char* const encoding = doc->encoding ? reinterpret_cast<const char*>(doc->encoding) : "UTF-8";
    xmlDocDumpMemoryEnc(document.tree->doc, &text, &size, encoding);
    if (!text) _com_raise_error(_com_error::kFail, "the document could not be written in its encoding");
    const std::unique_ptr<xmlChar, decltype(xmlFree)> owner(text, xmlFree);
    return {reinterpret_cast<const char*>(text), static_cast<std::size_t>(size)};
}

IXMLDOMNode DocumentElement(Node& document) {
    return HandleTo(*document.tree, xmlDocGetRootElement(document.tree->doc));
}

IXMLDOMNode CreateElement(Node& document, std::string_view tag) {
    Tree& tree = *document.tree;
    xmlNode* const node = xmlNewDocNode(tree.doc, nullptr, Xml(ToUtf8(tag).c_str()), nullptr);
    if (!node) throw std::bad_alloc();
    tree.orphans.emplace(node, 0);
    return HandleTo(tree, node);
}

}  // namespace qv::dom
