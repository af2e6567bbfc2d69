#pragma once

/// @file A menu in the form of a tree, as the calls of the script "TreeMenu.js" that draws it in the page.

#include <memory>
#include <vector>

#include "qvcommon/framework/String.h"

class CHtmlTreeBuilder;

/// A node of the menu; it owns the nodes below it.
///
/// Texts, links, styles, pictures and folders go into script strings in single quotes as they are. The caller must not
/// pass a quote, a line end or "</script", and writes each "\" twice; a text may hold the escapes of script strings.
/// One tree, one thread.
class QVCOMMON_API CHtmlTreeNode {
public:
    CHtmlTreeNode();
    /// @param image  the node's picture; empty for those of the folder that SetImageDir has set.
    /// @param link  what a click on the text opens; may be empty.
    /// @param selected  not zero for the current page's node.
    CHtmlTreeNode(const char* text, const char* image, const char* link, int selected);
    CHtmlTreeNode(const CHtmlTreeNode&) = delete;
    CHtmlTreeNode& operator=(const CHtmlTreeNode&) = delete;

    // The operations that derived classes change, in this order.
    virtual ~CHtmlTreeNode();
    /// Takes the child over, at the end, and returns it. A node without a parent hands down no builder: build the tree
    /// from its root on.
    virtual CHtmlTreeNode* AddNode(CHtmlTreeNode* child);
    /// The calls that add this node and those below it to the node of the id, a line each. Every branch that leads to a
    /// selected node is open. A whole tree takes time in line with its size. The depth of a tree is bounded by the
    /// thread's stack; some thousands are no concern.
    virtual CString GetHtml(const char* parentId);
    /// The builder's selected style when this node is selected, else empty.
    virtual CString GetStyle();
    /// As the constructor got it; 0 for a node without arguments.
    virtual int IsSelected();
    /// Whether this node or any below it is selected.
    virtual int HasSelected();
    /// The node's picture; without one "folder.gif" of the folder, or "folder-expanded.gif" when `expanded` is not zero.
    /// (GetHtml asks for the latter in both states.)
    virtual CString GetImage(int expanded);

    /// The folder of the pictures, for all trees; gets a final "\" where it lacks it. It stands in script strings: pass
    /// img and two backslashes for the folder "img", or nothing for the page's own. Not safe while another thread works
    /// with a tree.
    static void SetImageDir(const char* directory);

protected:
    /// Nodes that are owned.
    using Children = std::vector<std::unique_ptr<CHtmlTreeNode>>;

    /// The nodes directly below, in their order.
    const Children& GetChildren() const { return m_children; }
    /// The name of the node in the page's script, which GetHtml has given it last.
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
    unsigned m_askedIn = 0;  // the builder's pass in which m_hasSelected was asked for
    bool m_hasSelected = false;

    static CString ms_strImageDir;
};

/// The root of a tree, which draws no item itself.
class QVCOMMON_API CHtmlTreeBuilder : public CHtmlTreeNode {
public:
    CHtmlTreeBuilder();

    using CHtmlTreeNode::GetHtml;
    /// The whole menu as a script, to be written where the menu is to appear.
    virtual CString GetHtml();
    /// The tag that loads "TreeMenu.js" from the folder, for the page's head. The folder is kept for GetHtml as it is
    /// given: without a final "\", which would end the string that it stands in.
    virtual CString GetDropdownScript(const char* directory);
    /// The frame that links open in; empty for the page's own.
    virtual void SetTargetFrame(const char* frame);
    virtual CString GetTargetFrame();
    /// The style class of a selected node's text.
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
