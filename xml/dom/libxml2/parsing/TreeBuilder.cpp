#include "xml/dom/libxml2/parsing/TreeBuilder.h"

#include <libxml/SAX2.h>
#include <libxml/valid.h>

#include <iterator>
#include <new>
#include <utility>

#include "xml/dom/Characters.h"
#include "xml/dom/libxml2/Problem.h"

namespace qv::dom {
namespace {

struct FreeContext {
    void operator()(xmlParserCtxt* context) const { xmlFreeParserCtxt(context); }
};

xmlParserCtxt* ContextOf(void* data) {
    return static_cast<xmlParserCtxt*>(data);
}

TreeBuilder& BuilderOf(void* data) {
    return *static_cast<TreeBuilder*>(ContextOf(data)->_private);
}

// The fields of an attribute as the parser passes it.
enum Part { Local, Prefix, Uri, Value, End, kParts };

const xmlChar* QualifiedName(xmlParserCtxt* context, const xmlChar* prefix, const xmlChar* local) {
    if (!prefix) return local;
    return xmlDictQLookup(context->dict, prefix, local);
}

bool IsBlankText(const xmlNode* node) {
    return node->type == XML_TEXT_NODE && IsBlank(View(node->content));
}

// An invalid namespace URI, or a parser warning about it, is not an error of the document.
bool IsSerious(const xmlError& error) {
    if (error.code == XML_WAR_UNDECLARED_ENTITY) return true;
    if (error.domain == XML_FROM_NAMESPACE)
        return error.level == XML_ERR_ERROR && error.code != XML_WAR_NS_URI && error.code != XML_WAR_NS_URI_RELATIVE;
    return error.level == XML_ERR_FATAL;
}

}  // namespace

std::string Literal(std::string_view value) {
    std::string out;
    for (const char c : value) {
        switch (c) {
            case '&': out += "&amp;"; break;
            case '<': out += "&lt;"; break;
            case '\n': out += "&#10;"; break;
            case '\r': out += "&#13;"; break;
            case '\t': out += "&#9;"; break;
            default: out += c;
        }
    }
    return out;
}

struct TreeBuilder::Handlers {
    static void Install(xmlSAXHandler& sax) {
        sax.serror = TakeError;
        sax.entityDecl = [](void* data, const xmlChar*, int, const xmlChar*, const xmlChar*, xmlChar*) {
            RefuseEntity(data);
        };
        sax.unparsedEntityDecl = [](void* data, const xmlChar*, const xmlChar*, const xmlChar*, const xmlChar*) {
            RefuseEntity(data);
        };
        sax.externalSubset = nullptr;
        sax.attributeDecl = DeclareAttribute;
        sax.startElementNs = StartElement;
        sax.endElementNs = EndElement;
        sax.endDocument = EndDocument;
        sax.characters = sax.ignorableWhitespace = AddText;
    }

    static void TakeError(void* data, xmlError* error) {
        TreeBuilder& self = BuilderOf(data);
        if (!IsSerious(*error) || self.m_problem.get_errorCode() != 0) return;
        self.m_problem = ProblemOf(*error);
        xmlStopParser(ContextOf(data));
    }

    static void RefuseEntity(void* data) {
        BuilderOf(data).Refuse(ContextOf(data), "The document type declaration must not declare entities");
    }

    // Keeps the declaration verbatim: libxml2 drops an invalid default, and writes a default unescaped.
    static void DeclareAttribute(void* data, const xmlChar* element, const xmlChar* name, int type, int kind,
                                 const xmlChar* value, xmlEnumeration* choices) {
        xmlParserCtxt* const context = ContextOf(data);
        const auto find = [&] { return xmlGetDtdAttrDesc(context->myDoc->intSubset, element, name); };
        const bool again = find() != nullptr;
        xmlSAX2AttributeDecl(data, element, name, type, kind, nullptr, choices);
        xmlAttribute* const declared = value && !again ? find() : nullptr;
        if (!declared) return;
        if (!CanDefault(View(name), View(value))) return BuilderOf(data).Refuse(context, kBadDefault);
        if (IsDeclaration(View(name)))
            BuilderOf(data).m_defaultedNamespaces[std::string(View(element))] += {1, std::ssize(View(value))};
        declared->defaultValue = xmlDictLookup(context->dict, Xml(Literal(View(value)).c_str()), -1);
    }

    static void StartElement(void* data, const xmlChar* local, const xmlChar* prefix, const xmlChar*, int declarations,
                             const xmlChar** uris, int count, int defaulted, const xmlChar** attributes) {
        xmlParserCtxt* const context = ContextOf(data);
        TreeBuilder& self = BuilderOf(data);
        const xmlChar* const name = QualifiedName(context, prefix, local);
        self.CountDefaults(View(name), attributes + (count - defaulted) * kParts, defaulted);
        if (++self.m_depth > kMaxDepth) return self.Refuse(context, "Elements are nested too deeply");
        if (self.m_defaults.AreTooMany()) return self.Refuse(context, "Too many attributes are given by default");
        self.m_namespaces |= declarations > 0;
        const auto depth = static_cast<std::size_t>(self.m_depth);
        self.m_hasBlanks[depth] = false;
        self.m_preserves[depth] = self.m_preserves[depth - 1];
        for (int i = 0; i < count; ++i) {
            const xmlChar** const parts = attributes + i * kParts;
            if (!parts[Prefix]) continue;
            parts[Local] = QualifiedName(context, parts[Prefix], parts[Local]);
            parts[Prefix] = parts[Uri] = nullptr;
            if (View(parts[Local]) != "xml:space") continue;
            const std::string_view value(reinterpret_cast<const char*>(parts[Value]),
                                         static_cast<std::size_t>(parts[End] - parts[Value]));
            self.m_preserves[depth] = value == "preserve";
        }
        // libxml2 searches all previous attributes for each one it adds.
        constexpr int kFewAttributes = 32;
        const int few = count <= kFewAttributes ? count : 0;
        xmlSAX2StartElementNs(data, name, nullptr, nullptr, declarations, uris, few, 0, attributes);
        if (few < count && !context->disableSAX && !AppendAttributes(context->node, attributes, count))
            self.Refuse(context, "There is not enough memory");
    }

    // Appends attributes in O(n). Their values contain no references any more. Returns false if memory runs out.
    static bool AppendAttributes(xmlNode* element, const xmlChar** attributes, int count) {
        xmlAttr* last = nullptr;
        for (const xmlChar** parts = attributes; count > 0; --count, parts += kParts) {
            const std::string value(parts[Value], parts[End]);
            xmlAttr* const before = std::exchange(element->properties, nullptr);
            xmlAttr* const made = xmlNewProp(element, parts[Local], Xml(value.c_str()));
            if (before) element->properties = before;
            if (!made) return false;
            made->prev = last;
            if (last) last->next = made;
            last = made;
        }
        return true;
    }

    // A text may arrive in parts. All parts of a blank text begin with a space, so an element without such parts has
    // none.
    static void AddText(void* data, const xmlChar* text, int size) {
        TreeBuilder& self = BuilderOf(data);
        if (IsSpace(static_cast<char>(*text))) self.m_hasBlanks[static_cast<std::size_t>(self.m_depth)] = true;
        xmlSAX2Characters(data, text, size);
    }

    static void EndElement(void* data, const xmlChar* local, const xmlChar* prefix, const xmlChar* uri) {
        xmlParserCtxt* const context = ContextOf(data);
        TreeBuilder& self = BuilderOf(data);
        const auto depth = static_cast<std::size_t>(self.m_depth);
        if (!self.m_keepSpace && self.m_hasBlanks[depth] && !self.m_preserves[depth] && context->node)
            self.DropBlanks(context->node);
        --self.m_depth;
        xmlSAX2EndElementNs(data, local, prefix, uri);
    }

    // The parser takes a zero byte for the end of the input.
    static void EndDocument(void* data) {
        xmlParserCtxt* const context = ContextOf(data);
        xmlSAX2EndDocument(data);
        if (context->input && context->input->cur < context->input->end)
            BuilderOf(data).Refuse(context, "A zero byte is not a character of XML");
    }
};

void TreeBuilder::Refuse(xmlParserCtxt* context, const char* reason) {
    if (m_problem.get_errorCode() == 0)
        m_problem = {kRefused, reason, context->input ? context->input->line : 0,
                     context->input ? context->input->col : 0};
    xmlStopParser(context);
}

// The parser does not count namespace declarations among the defaulted attributes, and does not mark them.
void TreeBuilder::CountDefaults(std::string_view element, const xmlChar** attributes, int count) {
    m_defaults.number += count;
    for (const xmlChar** parts = attributes; count > 0; --count, parts += kParts)
        m_defaults.bytes += parts[End] - parts[Value];
    if (m_defaultedNamespaces.empty()) return;
    const auto namespaces = m_defaultedNamespaces.find(element);
    if (namespaces != m_defaultedNamespaces.end()) m_defaults += namespaces->second;
}

void TreeBuilder::DropBlanks(xmlNode* element) const {
    for (xmlNode* node = element->children; node;) {
        xmlNode* const next = node->next;
        if (IsBlankText(node)) {
            xmlUnlinkNode(node);
            xmlFreeNode(node);
        }
        node = next;
    }
}

Doc TreeBuilder::Parse(std::string_view bytes, const char* encoding, int options) {
    const std::unique_ptr<xmlParserCtxt, FreeContext> context(xmlNewParserCtxt());
    if (!context) throw std::bad_alloc();
    context->_private = this;
    Handlers::Install(*context->sax);
    // Depth and length have their own limits. References are replaced; there are no entities.
    constexpr int always = XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_COMPACT | XML_PARSE_NOENT;
    Doc doc(xmlCtxtReadMemory(context.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr, encoding,
                              options | always));
    const bool whole = doc && context->wellFormed && xmlDocGetRootElement(doc.get());
    if (m_problem.get_errorCode() == 0 && !whole) m_problem = {_com_error::kFail, "The document is empty", 1, 1};
    if (m_problem.get_errorCode() != 0) return nullptr;
    // The table of identifiers would point to freed attributes.
    xmlFreeIDTable(static_cast<xmlIDTable*>(doc->ids));
    doc->ids = nullptr;
    return doc;
}

}  // namespace qv::dom
