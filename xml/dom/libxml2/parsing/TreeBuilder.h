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

/// What a literal has to look like so that it means the value, whichever quotes it gets.
std::string Literal(std::string_view value);

/// Makes a tree of whole names while libxml2 parses, in one pass, and ends the parsing at the first error or limit: more
/// than kMaxDepth elements in each other, more than kMostDefaults attributes that only a declaration gives, a declaration
/// of an entity, a reference to one that was not declared. Nothing external is ever opened.
class TreeBuilder {
public:
    explicit TreeBuilder(bool keepSpace) : m_keepSpace(keepSpace) {}
    TreeBuilder(const TreeBuilder&) = delete;
    TreeBuilder& operator=(const TreeBuilder&) = delete;

    /// Null when the document is refused. @param encoding  null: as the bytes declare it.
    Doc Parse(std::string_view bytes, const char* encoding, int options);
    const MSXML2::IXMLDOMParseError& Problem() const { return m_problem; }
    bool HasNamespaces() const { return m_namespaces; }

    static constexpr int kMostDefaults = 100'000;

private:
    struct Handlers;

    void Refuse(xmlParserCtxt* context, const char* reason);
    void DropBlanks(xmlNode* element) const;

    bool m_keepSpace;
    bool m_namespaces = false;
    int m_depth = 0;
    int m_defaults = 0;
    // By depth: xml:space, and whether there may be blank texts.
    std::array<bool, kMaxDepth + 1> m_preserves = {}, m_hasBlanks = {};
    MSXML2::IXMLDOMParseError m_problem;
};

}  // namespace qv::dom
