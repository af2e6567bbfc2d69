#include <libxml/xmlsave.h>

#include <memory>
#include <new>
#include <utility>

#include "xml/dom/Markup.h"
#include "xml/dom/libxml2/Problem.h"
#include "xml/dom/libxml2/names/Scope.h"
#include "xml/dom/libxml2/parsing/TreeBuilder.h"

namespace qv::dom {
namespace {

using MSXML2::IXMLDOMParseError;

Doc NewDoc() {
    PrepareLibrary();
    Doc doc(xmlNewDoc(Xml("1.0")));
    if (!doc) throw std::bad_alloc();
    return doc;
}

bool Refuse(Node& document, const IXMLDOMParseError& problem) {
    SetProblem(document, problem);
    return false;
}

bool Load(Node& document, std::string_view bytes, const char* encoding, int options) {
    if (bytes.size() > kLongestDocument) return Refuse(document, TooLong());
    PrepareLibrary();
    const ErrorSuppressor silence;
    // Free the old content first, so that the new one can reuse its memory. A failure would discard it anyway.
    SetProblem(document, {});
    TreeBuilder builder(document.tree->keepSpace);
    Doc doc = builder.Parse(bytes, encoding, options);
    if (!doc) return Refuse(document, builder.Problem());
    ReplaceTree(document, doc.release(), builder.HasNamespaces());
    return true;
}

int Append(void* out, const char* bytes, int count) {
    auto& text = *static_cast<std::string*>(out);
    const auto size = static_cast<std::size_t>(count);
    if (text.size() + size > kLongestDocument) return -1;
    text.append(bytes, size);
    return count;
}

// libxml2 writes the URIs of declarations verbatim. While this lives, they are escaped.
class WrittenUris {
public:
    explicit WrittenUris(xmlDoc* doc) {
        const auto* const top = reinterpret_cast<const xmlNode*>(doc);
        for (xmlNode* node = doc->children; node; node = NextInSubtree(top, node))
            for (xmlNs* ns = node->type == XML_ELEMENT_NODE ? node->nsDef : nullptr; ns; ns = ns->next)
                if (View(ns->href).find_first_of("&<\t\r\n") != std::string_view::npos) Replace(ns);
    }
    WrittenUris(const WrittenUris&) = delete;
    WrittenUris& operator=(const WrittenUris&) = delete;
    ~WrittenUris() {
        for (const auto& [ns, uri] : m_own) xmlFree(const_cast<xmlChar*>(std::exchange(ns->href, uri)));
    }

private:
    void Replace(xmlNs* ns) {
        m_own.emplace_back(ns, ns->href);
        ns->href = xmlStrdup(Xml(Literal(View(ns->href)).c_str()));
    }

    std::vector<std::pair<xmlNs*, const xmlChar*>> m_own;
};

// Returns an empty string if the document cannot be written in the encoding.
std::string Written(xmlDoc* doc, const char* encoding) {
    const ErrorSuppressor silence;
    const WrittenUris uris(doc);
    std::string text;
    xmlSaveCtxt* const save = xmlSaveToIO(Append, nullptr, &text, encoding, 0);
    if (!save) return {};
    const bool saved = xmlSaveDoc(save, doc) >= 0;
    return xmlSaveClose(save) >= 0 && saved ? text : "";
}

std::string MarkupIn(Node& document) {
    Retain(document);
    return MarkupOf(IXMLDOMNode(&document));
}

// Whether the bytes, parsed again, equal the document: names and comments have no references for characters that an
// encoding lacks.
bool Means(std::string_view bytes, Node& document) {
    HRESULT error = 0;
    const IXMLDOMNode copy(CreateDocument(error));
    SetKeepSpace(copy.Get(), true);
    return LoadBytes(copy.Get(), bytes) && MarkupIn(copy.Get()) == MarkupIn(document);
}

bool HoldsEverything(std::string_view encoding) {
    return encoding == "UTF-8" || encoding == "utf-8" || encoding.starts_with("UTF-16") ||
           encoding.starts_with("utf-16");
}

// Returns the next attribute declaration in the internal subset, from a node on.
xmlNode* AttributeDeclaration(xmlNode* node) {
    while (node && node->type != XML_ATTRIBUTE_DECL) node = node->next;
    return node;
}

bool HasAttributeDeclarations(const xmlDoc* doc) {
    return doc->intSubset && AttributeDeclaration(doc->intSubset->children);
}

// When the document is read again, they would give defaults to elements that were added or have lost them.
void LeaveOutAttributeDeclarations(const xmlDoc* doc) {
    xmlDtd* const subset = doc->intSubset;
    for (xmlNode* node = AttributeDeclaration(subset->children); node;) {
        xmlNode* const declaration = std::exchange(node, AttributeDeclaration(node->next));
        xmlUnlinkNode(declaration);
    }
    if (subset->children) return;
    // libxml2 writes an empty subset in brackets while it has tables, which it does not have when it is read again.
    xmlFreeElementTable(static_cast<xmlElementTable*>(std::exchange(subset->elements, nullptr)));
    xmlFreeAttributeTable(static_cast<xmlAttributeTable*>(std::exchange(subset->attributes, nullptr)));
}

}  // namespace

Node* CreateDocument(HRESULT& error) {
    error = 0;
    auto* const tree = new Tree{.doc = NewDoc().release(), .problem = {}};
    // The last handle deletes it. NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks)
    return AcquireNode(*tree, reinterpret_cast<xmlNode*>(tree->doc));
}

// Loads never run in the background here, and nothing is validated.
void SetAsync(Node&, bool) {}
void SetValidate(Node&, bool) {}

void SetKeepSpace(Node& document, bool keep) {
    document.tree->keepSpace = keep;
}

void SetProblem(Node& document, const IXMLDOMParseError& problem) {
    ReplaceTree(document, NewDoc().release(), false);
    document.tree->problem = problem;
}

IXMLDOMParseError Problem(Node& document) {
    return document.tree->problem;
}

bool LoadText(Node& document, std::string_view text) {
    return Load(document, text, "UTF-8", XML_PARSE_IGNORE_ENC);
}

bool LoadBytes(Node& document, std::string_view bytes) {
    return Load(document, bytes, nullptr, 0);
}

std::string Save(Node& document) {
    xmlDoc* const doc = document.tree->doc;
    const std::string declared(doc->encoding ? View(doc->encoding) : "UTF-8");
    std::string bytes = Written(doc, declared.c_str());
    const auto holds = [&] { return !bytes.empty() && Means(bytes, document); };
    if (HasAttributeDeclarations(doc) && !holds()) {
        LeaveOutAttributeDeclarations(doc);
        bytes = Written(doc, declared.c_str());
    }
    if (!HoldsEverything(declared) && !holds()) bytes = Written(doc, "UTF-8");
    if (bytes.empty()) _com_raise_error(_com_error::kFail, "the document could not be written");
    return bytes;
}

IXMLDOMNode DocumentElement(Node& document) {
    return HandleTo(*document.tree, xmlDocGetRootElement(document.tree->doc));
}

IXMLDOMNode CreateElement(Node& document, std::string_view tag, Node* scope) {
    Tree& tree = *document.tree;
    const std::string_view prefix = PrefixOf(tag);
    const xmlChar* const uri = scope && !prefix.empty() ? UriOf(scope->node, prefix) : nullptr;
    if (!prefix.empty() && !uri) return nullptr;
    xmlNode* const node = xmlNewDocNode(tree.doc, nullptr, Xml(std::string(tag).c_str()), nullptr);
    IXMLDOMNode element = HandleToOrphan(tree, node);
    if (uri) Settle(tree, node, {{std::string(prefix), std::string(View(uri))}});
    return element;
}

}  // namespace qv::dom
