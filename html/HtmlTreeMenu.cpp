#include "qvcommon/HtmlTreeMenu.h"

#include <algorithm>
#include <typeinfo>

#include "qvcommon/FileUtils.h"
#include "qvcommon/HtmlWriter.h"
#include "qvcommon/StringHelper.h"

CString CHtmlTreeNode::ms_strImageDir;

CHtmlTreeNode::CHtmlTreeNode() : m_strId(CStringHelper::GetNewGuid(0)) {
    m_strId.Remove('-');
}

CHtmlTreeNode::CHtmlTreeNode(const char* text, const char* image, const char* link, int selected) : CHtmlTreeNode() {
    m_strText = text;
    m_strImage = image;
    m_bSelected = selected;
    m_strLink = link;
}

CHtmlTreeNode::~CHtmlTreeNode() = default;

CHtmlTreeNode* CHtmlTreeNode::AddNode(CHtmlTreeNode* child) {
    child->m_pBuilder = m_pBuilder;
    m_children.emplace_back(child);
    return child;
}

void CHtmlTreeNode::SetImageDir(const char* directory) {
    ms_strImageDir = CFileUtils::TerminateDir(directory);
}

int CHtmlTreeNode::IsSelected() {
    return m_bSelected;
}

int CHtmlTreeNode::HasSelected() {
    return IsSelected() ||
           std::any_of(m_children.begin(), m_children.end(), [](const auto& child) { return child->AskHasSelected(); });
}

bool CHtmlTreeNode::AskHasSelected() {
    if (!m_pBuilder || !m_pBuilder->m_inPass) return HasSelected();
    if (m_askedIn != m_pBuilder->m_pass) {
        m_hasSelected = HasSelected();
        m_askedIn = m_pBuilder->m_pass;
    }
    return m_hasSelected;
}

CString CHtmlTreeNode::GetStyle() {
    return IsSelected() && m_pBuilder ? m_pBuilder->GetSelectedStyle() : CString();
}

CString CHtmlTreeNode::GetImage(int expanded) {
    if (!m_strImage.IsEmpty()) return m_strImage;
    return ms_strImageDir + (expanded ? "folder-expanded.gif" : "folder.gif");
}

CString CHtmlTreeNode::GetHtml(const char* parentId) {
    CString html;
    AppendHtml(html, parentId);
    return html;
}

void CHtmlTreeNode::AppendHtml(CString& html, const char* parentId) {
    const CString image = GetImage(1), style = GetStyle(),
                  frame = m_pBuilder ? m_pBuilder->GetTargetFrame() : CString();
    for (const std::string_view part : std::initializer_list<std::string_view>{
             "node", m_strId, " = node", parentId, ".addItem(new TreeNode('", m_strText, "', '", image, "', '",
             m_strLink, "', ", AskHasSelected() ? "true" : "false", ", true, '", style, "', '", frame, "', '", image,
             "'));\n"})
        html += part;
    AppendChildren(html);
}

// The result of a derived class is inserted as it is; plain nodes append to one text, which avoids a copy per level.
void CHtmlTreeNode::AppendChildren(CString& html) {
    for (const auto& child : m_children) {
        const CHtmlTreeNode& node = *child;
        if (typeid(node) == typeid(CHtmlTreeNode))
            child->AppendHtml(html, m_strId);
        else
            html += child->GetHtml(m_strId);
    }
}

CHtmlTreeBuilder::CHtmlTreeBuilder() {
    m_pBuilder = this;
}

/// While it lives, each node's HasSelected is called once.
class CHtmlTreeBuilder::Pass {
public:
    explicit Pass(CHtmlTreeBuilder& builder) : m_builder(builder) {
        ++m_builder.m_pass;
        m_builder.m_inPass = true;
    }
    ~Pass() { m_builder.m_inPass = false; }
    Pass(const Pass&) = delete;
    Pass& operator=(const Pass&) = delete;

private:
    CHtmlTreeBuilder& m_builder;
};

CString CHtmlTreeBuilder::GetHtml() {
    const Pass pass(*this);
    CHtmlWriter menu;
    CString calls;
    calls.Format("\nnode%s = new TreeMenu('%s','node%s', '_self', 'treeMenuDefault', true, false);\n", m_strId,
                 m_strScriptDir, m_strId);
    menu.OpenTag("script", "language=\"javascript\" type=\"text/javascript\"");
    AppendChildren(calls);
    menu.AddFormattedText(calls);
    calls.Format("node%s.drawMenu();\nnode%s.resetBranches();\n", m_strId, m_strId);
    menu.AddFormattedText(calls);
    menu.CloseTag("script");
    return menu.GetHtml();
}

CString CHtmlTreeBuilder::GetDropdownScript(const char* directory) {
    m_strScriptDir = directory;
    return "<script src=\"" + CFileUtils::TerminateDir(directory) +
           "TreeMenu.js\" language=\"JavaScript\" type=\"text/javascript\"></script>";
}

void CHtmlTreeBuilder::SetTargetFrame(const char* frame) {
    m_strTargetFrame = frame;
}

CString CHtmlTreeBuilder::GetTargetFrame() {
    return m_strTargetFrame;
}

void CHtmlTreeBuilder::SetSelectedStyle(const char* style) {
    m_strSelectedStyle = style;
}

CString CHtmlTreeBuilder::GetSelectedStyle() {
    return m_strSelectedStyle;
}
