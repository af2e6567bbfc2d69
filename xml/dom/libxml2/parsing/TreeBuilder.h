#pragma once

#include <libxml/parser.h>

#include <array>
#include <memory>

#include "xml/dom/Held.h"
#include "xml/dom/libxml2/Internals.h"

namespace qv::dom {

struct FreeDoc {
    void operator()(xmlDoc* doc) const { xmlFreeDoc(doc); }
};
using Doc = std::unique_ptr<xmlDoc, FreeDoc>;

/// Returns the value escaped as a literal that is valid in either kind of quotes.
std::string Literal(std::string_view value);

/// Builds a tree with qualified names while libxml2 parses, in one pass. Stops at the first error or limit: more than
/// kMaxDepth nested elements, too many Defaults, an entity declaration, a reference to an undeclared entity. Nothing
/// external is ever opened.
class TreeBuilder {
public:
    explicit TreeBuilder(bool keepSpace) : m_keepSpace(keepSpace) {}
    TreeBuilder(const TreeBuilder&) = delete;
    TreeBuilder& operator=(const TreeBuilder&) = delete;

    /// Returns null if the document is refused. @param encoding  null: as the bytes declare it.
    Doc Parse(std::string_view bytes, const char* encoding, int options);
    const MSXML2::IXMLDOMParseError& Problem() const { return m_problem; }
    bool HasNamespaces() const { return m_namespaces; }

private:
    struct Handlers;

    void Refuse(xmlParserCtxt* context, const char* reason);
    void DropBlanks(xmlNode* element) const;
    void CountDefaults(std::string_view element, const xmlChar** attributes, int count);

    bool m_keepSpace;
    bool m_namespaces = false;
    int m_depth = 0;
    Defaults m_defaults;
    KeyedMap<std::string, Defaults> m_defaultedNamespaces;  // by element
    // By depth: xml:space, and whether there may be blank texts.
    std::array<bool, kMaxDepth + 1> m_preserves = {}, m_hasBlanks = {};
    MSXML2::IXMLDOMParseError m_problem;
};

}  // namespace qv::dom
