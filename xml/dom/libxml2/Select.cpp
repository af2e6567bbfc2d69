#include <libxml/xpathInternals.h>

#include <memory>

#include "xml/dom/libxml2/names/Functions.h"

namespace qv::dom {
namespace {

// A depth-first walk along the steps of a simple path. An element can only match the step of its depth, so every
// element is visited once.
class Walk {
public:
    Walk(Tree& tree, xmlNode* context, const SimplePath& path)
        : m_tree(tree), m_context(context), m_steps(path.steps) {}

    // Calls `found` with each node that the path selects, in document order, until it returns true.
    template <class Found>
    void Run(Found found) {
        xmlNode* node = Down(m_context);
        while (m_depth > 0 || node) {
            if (!node) {
                node = Up();
            } else if (m_depth + 1 == m_steps.size() ? found(node) : Attribute(node, found)) {
                return;
            } else if (m_depth + 1 == m_steps.size() || IsLastElement()) {
                node = NextMatch(node);
            } else {
                ++m_depth;
                m_parent = node;
                node = Down(node);
            }
        }
    }

    // Looks up the final attribute step in one element.
    template <class Found>
    bool Attribute(xmlNode* element, Found found) {
        if (!IsLastElement()) return false;
        xmlAttr* const attribute = FindAttribute(element, m_steps.back().name);
        return attribute && found(AsNode(attribute));
    }

private:
    bool IsLastElement() const { return m_depth + 2 == m_steps.size() && m_steps.back().attribute; }

    bool Matches(const xmlNode* node) const {
        const std::string_view name = m_steps[m_depth].name;
        return node->type == XML_ELEMENT_NODE && (name == "*" || HasName(node, name));
    }

    // Returns the first match of the current step among the children of a node.
    xmlNode* Down(const xmlNode* parent) {
        if (parent->type != XML_ELEMENT_NODE && parent->type != XML_DOCUMENT_NODE) return nullptr;
        int left = std::max(m_steps[m_depth].index, 0);
        if (left >= kFar) return FarChild(parent, static_cast<std::size_t>(left));
        for (xmlNode* child = parent->children; child; child = child->next)
            if (Matches(child) && left-- == 0) return child;
        return nullptr;
    }

    // Cached, so that many paths to many siblings are not quadratic.
    xmlNode* FarChild(const xmlNode* parent, std::size_t index) {
        NamedChildren& known = m_tree.children[parent];
        if (known.name != m_steps[m_depth].name) {
            known = {std::string(m_steps[m_depth].name), {}};
            for (xmlNode* child = parent->children; child; child = child->next)
                if (Matches(child)) known.nodes.push_back(child);
        }
        return index < known.nodes.size() ? known.nodes[index] : nullptr;
    }

    // Returns the next match among the siblings; a step with an index has only one.
    xmlNode* NextMatch(xmlNode* node) const {
        if (m_steps[m_depth].index >= 0) return nullptr;
        do node = node->next;
        while (node && !Matches(node));
        return node;
    }

    xmlNode* Up() {
        xmlNode* const node = m_parent;
        m_parent = node->parent;
        --m_depth;
        return NextMatch(node);
    }

    static constexpr int kFar = 8;

    Tree& m_tree;
    xmlNode* m_context;
    xmlNode* m_parent = nullptr;  // the match of the previous step
    const std::vector<PathStep>& m_steps;
    std::size_t m_depth = 0;
};

template <class Found>
void WalkSimple(Node& context, const SimplePath& path, Found found) {
    xmlNode* const from = path.absolute ? reinterpret_cast<xmlNode*>(context.tree->doc) : context.node;
    if (path.steps.empty()) return void(found(from));
    Walk walk(*context.tree, from, path);
    if (!path.steps[0].attribute) return walk.Run(found);
    if (xmlAttr* const attribute = FindAttribute(from, path.steps[0].name)) found(AsNode(attribute));
}

struct FreeXPathContext {
    void operator()(xmlXPathContext* context) const { xmlXPathFreeContext(context); }
};

void Ignore(void*, xmlError*) {}

template <class Found>
void Evaluate(Node& context, std::string_view path, Found found) {
    const std::optional<std::string> xpath = ToXPath(path);
    if (!xpath) _com_raise_error(_com_error::kFail, "the path cannot be read");
    const std::unique_ptr<xmlXPathContext, FreeXPathContext> scope(xmlXPathNewContext(context.tree->doc));
    if (!scope) throw std::bad_alloc();
    scope->node = context.node;
    scope->error = Ignore;
    xmlXPathRegisterFuncLookup(scope.get(), FindFunction, nullptr);
    const XPathObject result(xmlXPathEval(Xml(xpath->c_str()), scope.get()));
    if (!result || result->type != XPATH_NODESET) _com_raise_error(_com_error::kFail, "the path selects no nodes");
    if (!result->nodesetval) return;
    xmlXPathNodeSetSort(result->nodesetval);
    for (int i = 0; i < result->nodesetval->nodeNr; ++i) {
        xmlNode* const node = result->nodesetval->nodeTab[i];
        if (node->type != XML_NAMESPACE_DECL && found(node)) return;
    }
}

template <class Found>
void Select(Node& context, std::string_view path, Found found) {
    if (const std::optional<SimplePath> simple = ReadSimplePath(path)) return WalkSimple(context, *simple, found);
    Evaluate(context, path, found);
}

}  // namespace

IXMLDOMNode SelectFirst(Node& context, std::string_view path) {
    xmlNode* first = nullptr;
    Select(context, path, [&](xmlNode* node) { return (first = node) != nullptr; });
    return HandleTo(*context.tree, first);
}

std::vector<IXMLDOMNode> SelectAll(Node& context, std::string_view path) {
    std::vector<IXMLDOMNode> all;
    Select(context, path, [&](xmlNode* node) {
        all.push_back(HandleTo(*context.tree, node));
        return false;
    });
    return all;
}

}  // namespace qv::dom
