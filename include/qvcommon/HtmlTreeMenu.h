#pragma once

/// @file A tree menu, as calls of the script "TreeMenu.js" that draws it in the page.

#include <memory>
#include <vector>

#include "qvcommon/framework/String.h"

class CHtmlTreeBuilder;

/// A node of the menu; owns its child nodes.
///
/// Texts, links, styles, pictures and folders are written verbatim into single-quoted script strings. The caller must
/// not pass a quote, a newline or "</script", and must double each "\"; a text may contain escapes of script strings.
/// Not thread-safe.
class QVCOMMON_API CHtmlTreeNode {
public:
    CHtmlTreeNode();
    /// @param image  the node's picture; empty for those in the folder set by SetImageDir.
    /// @param link  the address opened by a click on the text; may be empty.
    /// @param selected  non-zero for the current page's node.
    CHtmlTreeNode(const char* text, const char* image, const char* link, int selected);
    CHtmlTreeNode(const CHtmlTreeNode&) = delete;
    CHtmlTreeNode& operator=(const CHtmlTreeNode&) = delete;

    // The operations that derived classes override, in this order.
    virtual ~CHtmlTreeNode();
    /// Appends the child, takes ownership of it, and returns it. A node without a parent passes no builder to its
    /// children: build the tree from its root.
    virtual CHtmlTreeNode* AddNode(CHtmlTreeNode* child);
    /// Returns the calls that add this node and its descendants to the node with the given id, one per line. Every
    /// branch that contains a selected node is open. O(n) for a whole tree. The depth of a tree is limited by the
    /// thread's stack; a few thousand levels are safe.
    virtual CString GetHtml(const char* parentId);
    /// Returns the builder's selected style if this node is selected, else empty.
    virtual CString GetStyle();
    /// Returns the constructor's argument; 0 for a node constructed without arguments.
    virtual int IsSelected();
    /// Returns whether this node or any descendant is selected.
    virtual int HasSelected();
    /// Returns the node's picture; without one "folder.gif" of the folder, or "folder-expanded.gif" if `expanded` is
    /// non-zero. (GetHtml requests the latter in both states.)
    virtual CString GetImage(int expanded);

    /// Sets the folder of the pictures, for all trees; a missing trailing "\" is added. It is written into script
    /// strings: pass img and two backslashes for the folder "img", or an empty string for the page's own. Must not be
    /// called while another thread uses a tree.
    static void SetImageDir(const char* directory);

protected:
    /// Owned child nodes.
    using Children = std::vector<std::unique_ptr<CHtmlTreeNode>>;

    /// Returns the child nodes, in order.
    const Children& GetChildren() const { return m_children; }
    /// Returns the name of the node in the page's script, as last assigned by GetHtml.
    const CString& GetId() const { return m_strId; }

private:
    friend class CHtmlTreeBuilder;

    void AppendHtml(CString& html, const char* parentId);
    void AppendChildren(CString& html);
    bool AskHasSelected();

    Children m_children;
    CString m_strText;
    CString m_strImage;
    CString m_strId;
    int m_bSelected = 0;
    CString m_strLink;
    CHtmlTreeBuilder* m_pBuilder = nullptr;
    unsigned m_askedIn = 0;  // the builder's pass that computed m_hasSelected
    bool m_hasSelected = false;

    static CString ms_strImageDir;
};

/// The root of a tree, which does not draw an item itself.
class QVCOMMON_API CHtmlTreeBuilder : public CHtmlTreeNode {
public:
    CHtmlTreeBuilder();

    using CHtmlTreeNode::GetHtml;
    /// Returns the whole menu as a script, to be written where the menu is to appear.
    virtual CString GetHtml();
    /// Returns the tag that loads "TreeMenu.js" from the folder, for the page's head. The folder is stored verbatim for
    /// GetHtml: it must not end in "\", which would end the string that contains it.
    virtual CString GetDropdownScript(const char* directory);
    /// Sets the frame in which links open; empty for the page's own.
    virtual void SetTargetFrame(const char* frame);
    virtual CString GetTargetFrame();
    /// Sets the style class of a selected node's text.
    virtual void SetSelectedStyle(const char* style);
    virtual CString GetSelectedStyle();

private:
    friend class CHtmlTreeNode;
    class Pass;

    CString m_strTargetFrame;
    CString m_strSelectedStyle;
    CString m_strScriptDir;
    unsigned m_pass = 0;
    bool m_inPass = false;
};
