#pragma once

/// @file Random operations on trees, with a check of all that each one changes.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <random>

#include "qvcommon/XmlHelper.h"
#include "tests/support/ComCode.h"

/// Documents with namespaces, and nodes without a document. A step does one operation and compares the nodes around it with
/// what it must have made of them, or compares one of the nodes with a handle with its last known looks.
class XmlTreeModel {
public:
    /// @param frees  whether handles are dropped, documents loaded again, and nodes moved between documents
    XmlTreeModel(unsigned seed, bool frees) : m_random(seed), m_frees(frees) {
        for (std::size_t i = 0; i < kDocuments; ++i) Hold(CXmlHelper::CreateDocument());
        for (std::size_t i = 0; i < kDocuments; ++i) Load(i);
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
            case 10: return Number(20) || !m_frees ? Check() : Load(Number(kDocuments));
            default: return Number(10) ? Check() : RoundTrip(Number(kDocuments));
        }
    }

private:
    using IXMLDOMDocument = MSXML2::IXMLDOMDocument;
    using IXMLDOMElement = MSXML2::IXMLDOMElement;
    using IXMLDOMNode = MSXML2::IXMLDOMNode;
    static constexpr std::size_t kDocuments = 3, kMostHandles = 60, kMostNodes = 60;

    /// A node with a handle; the documents are the first ones. Most nodes have none.
    struct Held {
        IXMLDOMNode node;
        std::string looks;
    };

    static bool Succeeds(const std::function<void()>& action) {
        const HRESULT code = ComCodeOf(action);
        EXPECT_TRUE(code == 0 || code == _com_error::kInvalidArg) << code;
        return code == 0;
    }

    static bool IsElement(const IXMLDOMNode& node) { return node.get_nodeType() == MSXML2::NODE_ELEMENT; }

    static bool IsDocument(const IXMLDOMNode& node) { return node.get_nodeType() == MSXML2::NODE_DOCUMENT; }

    /// The names and values of the attributes that declare no prefix.
    static std::vector<std::pair<CString, CString>> Attributes(const IXMLDOMNode& node) {
        std::vector<std::pair<CString, CString>> attributes;
        for (const IXMLDOMNode& each : node.get_attributes())
            if (each.get_nodeName().Left(5) != "xmlns")
                attributes.emplace_back(each.get_nodeName(), each.get_nodeValue());
        return attributes;
    }

    static std::vector<std::string> LooksBelow(const IXMLDOMNode& node, const IXMLDOMNode& without = {}) {
        std::vector<std::string> children;
        if (!node) return children;
        for (IXMLDOMNode each = node.get_firstChild(); each; each = each.get_nextSibling())
            if (each != without) children.push_back(Looks(each, without));
        return children;
    }

    /// A node with all below it except one.
    static std::string Looks(const IXMLDOMNode& node, const IXMLDOMNode& without = {}) {
        CString looks = node.get_nodeName() + "{" + node.get_namespaceURI() + "}" + node.get_nodeValue();
        for (const auto& [name, value] : Attributes(node)) looks += " " + name + "=" + value;
        std::string below;
        for (const std::string& child : LooksBelow(node, without)) below += child;
        return looks.AsStd() + "(" + below + ")";
    }

    std::size_t Number(std::size_t below) { return static_cast<std::size_t>(m_random()) % below; }

    Held& Any() { return m_held[Number(m_held.size())]; }

    IXMLDOMElement AnyElement() {
        for (int i = 0; i < 20; ++i)
            if (const IXMLDOMNode& node = Any().node; IsElement(node)) return IXMLDOMElement(node);
        return {};
    }

    void Hold(const IXMLDOMNode& node) { m_held.push_back({node, Looks(node)}); }

    /// Accepts the present looks of a changed node and of all nodes around it. Handles of a document that were obtained in
    /// different ways may differ while it has no root.
    void Refresh(const IXMLDOMNode& changed) {
        for (IXMLDOMNode node = changed; node; node = node.get_parentNode())
            for (Held& held : m_held)
                if (held.node == node || (IsDocument(held.node) && !held.node.get_firstChild()))
                    held.looks = Looks(held.node);
    }

    void Load(std::size_t document) {
        const char* const texts[] = {"<r xmlns:p='v' xmlns='w'><a p:k='1'/>t<p:b><c xmlns=''/></p:b></r>",
                                     "<p:r xmlns:p='u' xmlns:q='x'><q:x/><a><b>1</b></a></p:r>", "<r><a/><b/></r>"};
        ASSERT_TRUE(IXMLDOMDocument(m_held[document].node).loadXML(texts[Number(3)]));
        Refresh(m_held[document].node);
    }

    void Create() {
        const IXMLDOMElement scope = AnyElement();
        if (!scope || m_held.size() >= kMostHandles) return;
        IXMLDOMNode root = scope;
        while (const IXMLDOMNode parent = root.get_parentNode()) root = parent;
        const std::string nodes = Looks(root);
        if (std::count(nodes.begin(), nodes.end(), '(') > static_cast<std::ptrdiff_t>(kMostNodes)) return;
        const std::string name = std::array{"a", "b", "p:c", "q:d"}[Number(4)];
        IXMLDOMElement made;
        if (Succeeds([&] { made = scope.get_ownerDocument().createElement(name, scope); })) return Hold(made);
        // An element around it with this prefix would declare it.
        for (IXMLDOMNode node = scope; node; node = node.get_parentNode())
            EXPECT_FALSE(node.get_nodeName().AsStd().starts_with(name.substr(0, 2)));
    }

    static bool Fits(const IXMLDOMNode& parent, const IXMLDOMNode& child) {
        for (IXMLDOMNode node = parent; node; node = node.get_parentNode())
            if (node == child) return false;
        if (IsElement(parent)) return true;
        for (IXMLDOMNode each = parent.get_firstChild(); each; each = each.get_nextSibling())
            if (IsElement(each) && each != child) return false;
        return true;
    }

    static IXMLDOMDocument DocumentOf(const IXMLDOMNode& node) {
        const IXMLDOMDocument self(node);
        return self ? self : node.get_ownerDocument();
    }

    void Move() {
        const IXMLDOMNode parent = Number(8) ? AnyElement() : m_held[Number(kDocuments)].node, child = AnyElement();
        if (!parent || !child || (!m_frees && !(DocumentOf(parent) == DocumentOf(child)))) return;
        const IXMLDOMNode from = child.get_parentNode();
        const std::vector<std::string> left = LooksBelow(from, child);
        std::vector<std::string> now = LooksBelow(parent, child);
        IXMLDOMNode reference = parent.get_firstChild();
        auto place = now.begin();
        for (std::size_t steps = Number(2) ? Number(now.size() + 1) : SIZE_MAX; reference && steps > 0; --steps) {
            place += reference != child;
            reference = reference.get_nextSibling();
        }
        now.insert(place, Looks(child));
        const bool fits = Fits(parent, child);
        ASSERT_EQ(Succeeds([&] { parent.insertBefore(child, reference); }), fits);
        if (!fits) return;
        EXPECT_EQ(child.get_parentNode(), parent);
        EXPECT_EQ(LooksBelow(parent), now);
        EXPECT_EQ(LooksBelow(from, child), left);
        Refresh(parent);
        Refresh(from);
    }

    void Remove() {
        const IXMLDOMNode child = Any().node, parent = child.get_parentNode();
        if (!parent) return;
        const std::vector<std::string> left = LooksBelow(parent, child);
        parent.removeChild(child);
        EXPECT_FALSE(child.get_parentNode());
        EXPECT_EQ(LooksBelow(parent), left);
        Refresh(parent);
    }

    void SetAttribute() {
        const IXMLDOMElement element = AnyElement();
        if (!element) return;
        const std::size_t which = Number(6);
        const char* const name = std::array{"k", "l", "p:k", "q:k", "xmlns:p", "xmlns:q"}[which];
        // A declaration must not change the meaning of names that use the prefix already.
        const bool declares = which > 3, isPlain = element.get_nodeName().Find(':') < 0 && Attributes(element).empty();
        if (declares && (!isPlain || element.get_firstChild())) return;
        const CString value(std::to_string(Number(100)));
        const bool set = Succeeds([&] { element.setAttribute(name, value); });
        EXPECT_TRUE(set || which >= 2);
        if (!set || (declares && !m_frees)) return;
        CString now;
        EXPECT_TRUE(element.getAttribute(name, now) && now == value);
        if (!declares) Refresh(element);
    }

    void RemoveAttribute() {
        const IXMLDOMElement element = AnyElement();
        auto attributes = element ? Attributes(element) : decltype(Attributes(element)){};
        if (attributes.empty()) return;
        element.removeAttribute(attributes[0].first);
        attributes.erase(attributes.begin());
        EXPECT_EQ(Attributes(element), attributes);
        Refresh(element);
    }

    void SetText() {
        const IXMLDOMElement element = AnyElement();
        if (!element || Number(5)) return;
        element.put_text("text");
        EXPECT_EQ(LooksBelow(element), std::vector<std::string>{"#text{}text()"});
        Refresh(element);
    }

    void Drop() {
        if (const std::size_t which = Number(m_held.size()); m_frees && which >= kDocuments)
            m_held.erase(m_held.begin() + static_cast<std::ptrdiff_t>(which));
    }

    /// Takes a handle of a node beside one that has a handle.
    void Take() {
        const IXMLDOMNode node = Any().node;
        const IXMLDOMNode other =
            std::array{node.get_firstChild(), node.get_nextSibling(), node.get_parentNode()}[Number(3)];
        const bool isHeld =
            std::any_of(m_held.begin(), m_held.end(), [&](const Held& held) { return held.node == other; });
        if (other && !isHeld && !IXMLDOMDocument(other) && m_held.size() < kMostHandles) Hold(other);
    }

    void Check() {
        const auto& [node, looks] = Any();
        EXPECT_EQ(Looks(node), looks);
        for (IXMLDOMNode child = node.get_firstChild(); child; child = child.get_nextSibling())
            EXPECT_EQ(child.get_parentNode(), node);
    }

    void RoundTrip(std::size_t which) {
        const IXMLDOMDocument document(m_held[which].node), again = CXmlHelper::CreateDocument();
        if (!document.get_documentElement()) return;
        ASSERT_TRUE(again.load(document.save())) << document.save();
        EXPECT_EQ(again.get_xml(), document.get_xml());
        ASSERT_TRUE(again.loadXML(document.get_xml())) << document.get_xml().AsStd();
    }

    std::mt19937 m_random;
    const bool m_frees;
    std::vector<Held> m_held;
};
