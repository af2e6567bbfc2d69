#include "xml/dom/libxml2/names/Functions.h"

#include <new>

#include "platform/Ascii.h"
#include "xml/dom/Held.h"

namespace qv::dom {
namespace {

void Push(xmlXPathParserContext* context, std::string_view text) {
    valuePush(context, xmlXPathNewString(Xml(std::string(text).c_str())));
}

bool IsNamed(const xmlNode* node) {
    return node && (node->type == XML_ELEMENT_NODE || node->type == XML_ATTRIBUTE_NODE);
}

// Returns the first node of the argument, or the context node without an argument; null if the set is empty and after
// an error.
const xmlNode* Argument(xmlXPathParserContext* context, int count) {
    if (count == 0) return context->context->node;
    const bool fits = count == 1 && context->value && context->value->type == XPATH_NODESET;
    if (!fits) {
        xmlXPathErr(context, count == 1 ? XPATH_INVALID_TYPE : XPATH_INVALID_ARITY);
        return nullptr;
    }
    const XPathObject nodes(valuePop(context));
    if (!nodes->nodesetval || nodes->nodesetval->nodeNr == 0) return nullptr;
    xmlXPathNodeSetSort(nodes->nodesetval);
    const xmlNode* const first = nodes->nodesetval->nodeTab[0];
    return first->type == XML_NAMESPACE_DECL ? nullptr : first;
}

void LocalName(xmlXPathParserContext* context, int count) {
    const xmlNode* const node = Argument(context, count);
    if (context->error) return;
    const bool named = node && (IsNamed(node) || node->type == XML_PI_NODE);
    Push(context, named ? LocalPartOf(View(node->name)) : "");
}

void NamespaceUriOf(xmlXPathParserContext* context, int count) {
    const xmlNode* const node = Argument(context, count);
    if (context->error) return;
    Push(context, IsNamed(node) ? View(NamespaceUri(node)) : "");
}

std::string Language(const xmlNode* node) {
    for (; node; node = node->parent)
        if (xmlAttr* const attribute = FindAttribute(const_cast<xmlNode*>(node), "xml:lang"))
            return attribute->children ? std::string(View(attribute->children->content)) : "";
    return {};
}

// Languages are compared case-insensitively, up to a "-".
void Lang(xmlXPathParserContext* context, int count) {
    if (count != 1) return xmlXPathErr(context, XPATH_INVALID_ARITY);
    xmlXPathStringFunction(context, 1);
    if (context->error) return;
    const XPathObject argument(valuePop(context));
    const std::string_view wanted = View(argument->stringval);
    const std::string language = Language(context->context->node);
    const bool longer = language.size() > wanted.size() && language[wanted.size()] == '-';
    const bool holds = (longer || language.size() == wanted.size()) &&
                       ascii::EqualsIgnoreCase(std::string_view(language).substr(0, wanted.size()), wanted);
    valuePush(context, xmlXPathNewBoolean(holds && !language.empty()));
}

}  // namespace

xmlXPathFunction FindFunction(void*, const xmlChar* name, const xmlChar* ns) {
    if (ns) return nullptr;
    const std::string_view wanted = View(name);
    if (wanted == "local-name") return LocalName;
    if (wanted == "namespace-uri") return NamespaceUriOf;
    return wanted == "lang" ? Lang : nullptr;
}

}  // namespace qv::dom
