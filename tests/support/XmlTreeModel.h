#pragma once

/// @file Trees as random operations have to make them, beside the DOM's own.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <random>

#include "qvcommon/XmlHelper.h"
#include "tests/support/ComCode.h"

/// Documents with namespaces, and nodes that stand nowhere. Each step does one operation on both sides, or compares them.
class XmlTreeModel {
public:
    /// @param frees  whether handles are let go, documents loaded again, and nodes moved between documents
    XmlTreeModel(unsigned seed, bool frees) : m_random(seed), m_frees(frees) {
        for (int i = 0; i < 3; ++i) m_documents.push_back(Learn(CXmlHelper::CreateDocument(), -1, true));
        for (int i = 0; i < 3; ++i) Load(i);
    }

    void Step() {
        switch (Number(12)) {
            case 0: return Create();
            case 1:
            case 2:
            case 3: return Move();
            case 4: return Remove();
            case 5: return SetAttribute();
            case 6: return RemoveAttribute();
            case 7: return SetText();
            case 8: return Drop();
            case 9: return Take();
            case 10: return Number(20) || !m_frees ? Check(Any()) : Load(Number(3));
            default: return Number(10) ? Check(Any()) : RoundTrip(m_documents[static_cast<std::size_t>(Number(3))]);
        }
    }

private:
    using IXMLDOMDocument = MSXML2::IXMLDOMDocument;
    using IXMLDOMElement = MSXML2::IXMLDOMElement;
    using IXMLDOMNode = MSXML2::IXMLDOMNode;

    // A node as it has to be. It may have a handle or not.
    struct Item {
        IXMLDOMNode handle;
        MSXML2::DOMNodeType type;
        std::string name, uri, text;
        std::map<std::string, std::string> attributes;  // without declarations
        int parent = -1;
        std::vector<int> children;
    };

    static bool Succeeds(const std::function<void()>& action) {
        const HRESULT code = ComCodeOf(action);
        EXPECT_TRUE(code == 0 || code == _com_error::kInvalidArg) << code;
        return code == 0;
    }

    int Number(int below) { return static_cast<int>(m_random() % static_cast<unsigned>(below)); }

    Item& At(int id) { return m_items.at(id); }

    int Any() {
        auto place = m_items.lower_bound(Number(m_next));
        if (place == m_items.end()) place = m_items.begin();
        return place->first;
    }

    int AnyElement() {
        for (int i = 0; i < 20; ++i)
            if (const int id = Any(); At(id).type == MSXML2::NODE_ELEMENT && At(id).handle) return id;
        return -1;
    }

    // What is below a node is learned with it; most of it gets no handle.
    int Learn(const IXMLDOMNode& node, int parent, bool keep) {
        const int id = m_next++;
        Item item{.handle = keep ? node : nullptr,
                  .type = node.get_nodeType(),
                  .name = node.get_nodeName().AsStd(),
                  .uri = node.get_namespaceURI().AsStd(),
                  .text = node.get_nodeValue().AsStd(),
                  .attributes = {},
                  .parent = parent,
                  .children = {}};
        for (const IXMLDOMNode& attribute : node.get_attributes())
            if (attribute.get_nodeName().Left(5) != "xmlns")
                item.attributes[attribute.get_nodeName().AsStd()] = attribute.get_nodeValue().AsStd();
        m_items.emplace(id, item);
        for (IXMLDOMNode child = node.get_firstChild(); child; child = child.get_nextSibling())
            At(id).children.push_back(Learn(child, id, Number(3) == 0));
        return id;
    }

    void Load(int document) {
        const char* const texts[] = {"<r xmlns:p='v' xmlns='w'><a p:k='1'/>t<p:b><c xmlns=''/></p:b></r>",
                                     "<p:r xmlns:p='u' xmlns:q='x'><q:x/><a><b>1</b></a></p:r>", "<r><a/><b/></r>"};
        int& id = m_documents[static_cast<std::size_t>(document)];
        const int before = id;
        const IXMLDOMDocument handle(At(before).handle);
        At(before).handle = nullptr;
        ASSERT_TRUE(handle.loadXML(texts[Number(3)]));
        id = Learn(handle, -1, true);
        Forget(before);
    }

    void Create() {
        const int scope = AnyElement();
        if (scope < 0 || m_items.size() > 150) return;
        const char* const names[] = {"a", "b", "p:c", "q:d"};
        const char* const name = names[Number(4)];
        IXMLDOMElement made;
        const auto create = [&] { made = At(scope).handle.get_ownerDocument().createElement(name, At(scope).handle); };
        if (Succeeds(create))
            Learn(made, -1, true);
        else
            EXPECT_EQ(UriAt(scope, std::string(name).substr(0, 1)), "");
    }

    // What a prefix is said to mean by the names that stand around; "" where these do not tell.
    std::string UriAt(int id, const std::string& prefix) {
        for (; id >= 0; id = At(id).parent)
            if (At(id).name.rfind(prefix + ":", 0) == 0) return At(id).uri;
        return "";
    }

    void Move() {
        const int parent = Number(8) ? AnyElement() : m_documents[static_cast<std::size_t>(Number(3))];
        const int child = AnyElement();
        if (parent < 0 || child < 0) return;
        if (!m_frees && !(DocumentOf(parent) == DocumentOf(child))) return;
        const std::vector<int>& children = At(parent).children;
        const int place = children.empty() || Number(2) ? -1 : Number(static_cast<int>(children.size()));
        const int before = place < 0 ? -1 : children[static_cast<std::size_t>(place)];
        IXMLDOMNode reference;
        if (before >= 0) reference = HandleOf(before);
        const bool fits = Fits(parent, child);
        EXPECT_EQ(Succeeds([&] { At(parent).handle.insertBefore(At(child).handle, reference); }), fits);
        if (!fits || before == child) return;
        Unlink(child);
        std::vector<int>& now = At(parent).children;
        now.insert(before < 0 ? now.end() : std::find(now.begin(), now.end(), before), child);
        At(child).parent = parent;
    }

    IXMLDOMDocument DocumentOf(int id) {
        const IXMLDOMDocument self(At(id).handle);
        return self ? self : At(id).handle.get_ownerDocument();
    }

    bool Fits(int parent, int child) {
        for (int id = parent; id >= 0; id = At(id).parent)
            if (id == child) return false;
        if (At(parent).type == MSXML2::NODE_ELEMENT) return true;
        return std::none_of(At(parent).children.begin(), At(parent).children.end(),
                            [&](int other) { return other != child && At(other).type == MSXML2::NODE_ELEMENT; });
    }

    void Unlink(int child) {
        const int parent = At(child).parent;
        if (parent < 0) return;
        std::erase(At(parent).children, child);
        At(child).parent = -1;
        Forget(parent);
    }

    void Remove() {
        const int child = Any(), parent = At(child).parent;
        if (parent < 0) return;
        HandleOf(parent).removeChild(HandleOf(child));
        Unlink(child);
        Forget(child);
    }

    void SetAttribute() {
        const int id = AnyElement();
        if (id < 0) return;
        const char* const names[] = {"k", "l", "p:k", "q:k", "xmlns:p", "xmlns:q"};
        const int which = Number(6);
        Item& item = At(id);
        // Names that are there already keep their meaning this way.
        const bool declares = which > 3;
        if (declares && (!item.children.empty() || !item.attributes.empty() || item.name.find(':') != item.name.npos))
            return;
        const std::string value = std::to_string(Number(100));
        const bool set = Succeeds([&] { IXMLDOMElement(item.handle).setAttribute(names[which], value); });
        if (which < 2) {
            EXPECT_TRUE(set);
        }
        if (set && !declares) item.attributes[names[which]] = value;
    }

    void RemoveAttribute() {
        const int id = AnyElement();
        if (id < 0 || At(id).attributes.empty()) return;
        const auto attribute = At(id).attributes.begin();
        IXMLDOMElement(At(id).handle).removeAttribute(attribute->first);
        At(id).attributes.erase(attribute);
    }

    void SetText() {
        const int id = AnyElement();
        if (id < 0 || Number(5)) return;
        At(id).handle.put_text("text");
        for (const int child : std::vector<int>(At(id).children)) {
            Unlink(child);
            Forget(child);
        }
        At(id).children.push_back(Learn(At(id).handle.get_firstChild(), id, false));
    }

    void Drop() {
        const int id = Any();
        if (!m_frees || At(id).type == MSXML2::NODE_DOCUMENT) return;
        At(id).handle = nullptr;
        Forget(id);
    }

    void Take() {
        if (const int id = Any(); At(id).parent >= 0) At(id).handle = HandleOf(id);
    }

    // By the way of a node around it that has a handle, or of one below.
    IXMLDOMNode HandleOf(int id) {
        if (At(id).handle) return At(id).handle;
        if (const int below = WithHandle(id); below >= 0) {
            IXMLDOMNode node = At(below).handle;
            for (int at = below; at != id; at = At(at).parent) node = node.get_parentNode();
            return node;
        }
        const std::vector<int>& children = At(At(id).parent).children;
        IXMLDOMNode node = HandleOf(At(id).parent).get_firstChild();
        for (auto child = children.begin(); *child != id; ++child) node = node.get_nextSibling();
        return node;
    }

    int WithHandle(int id) {
        if (At(id).handle) return id;
        for (const int child : At(id).children)
            if (const int found = WithHandle(child); found >= 0) return found;
        return -1;
    }

    // A tree that nobody looks at is gone.
    void Forget(int id) {
        while (At(id).parent >= 0) id = At(id).parent;
        if (WithHandle(id) < 0) Erase(id);
    }

    void Erase(int id) {
        for (const int child : At(id).children) Erase(child);
        m_items.erase(id);
    }

    void Check(int id) {
        const IXMLDOMNode node = HandleOf(id);
        const Item& item = At(id);
        ASSERT_EQ(node.get_nodeType(), item.type);
        EXPECT_EQ(node.get_nodeName().AsStd(), item.name);
        EXPECT_EQ(node.get_namespaceURI().AsStd(), item.uri);
        EXPECT_EQ(node.get_nodeValue().AsStd(), item.text);
        EXPECT_EQ(node.get_parentNode(), item.parent < 0 ? IXMLDOMNode() : HandleOf(item.parent));
        std::size_t attributes = 0;
        for (const IXMLDOMNode& attribute : node.get_attributes())
            attributes += attribute.get_nodeName().Left(5) != "xmlns";
        EXPECT_EQ(attributes, item.attributes.size());
        CString value;
        for (const auto& [name, wanted] : item.attributes)
            EXPECT_TRUE(IXMLDOMElement(node).getAttribute(name, value) && value == wanted.c_str()) << name;
        IXMLDOMNode child = node.get_firstChild();
        for (const int wanted : item.children) {
            ASSERT_TRUE(child);
            EXPECT_EQ(child.get_nodeName().AsStd(), At(wanted).name);
            child = child.get_nextSibling();
        }
        EXPECT_FALSE(child);
    }

    void RoundTrip(int id) {
        const IXMLDOMDocument document(At(id).handle), again = CXmlHelper::CreateDocument();
        if (!document.get_documentElement()) return;
        ASSERT_TRUE(again.load(document.save())) << document.save();
        EXPECT_EQ(again.get_xml(), document.get_xml());
        ASSERT_TRUE(again.loadXML(document.get_xml())) << document.get_xml().AsStd();
    }

    std::mt19937 m_random;
    const bool m_frees;
    std::map<int, Item> m_items;
    int m_next = 0;
    std::vector<int> m_documents;
};