#include "tests/support/SamplePages.h"

#include "qvcommon/HtmlTreeMenu.h"
#include "qvcommon/NavBar.h"
#include "qvcommon/StringHelper.h"

void SamplePage::AddTitleToHead(const char* title, const char* stylesheet, const char* headTag,
                                const char* dropdownImageDir) {
    CHtmlWriter::AddTitleToHead(title, stylesheet, headTag, dropdownImageDir);
    if (m_support) AddBrowserSupport();
}

namespace {

void WriteElements(CHtmlWriter& page) {
    page.AddHeading(1, "Elements");
    page.AddPreformattedParagraph("a\nb");
    page.OpenBulletList();
    page.AddLine(CHtmlWriter::Clean("a < b"));
    page.CloseBulletList();
    page.AddImage("assets/folder.gif", CHtmlWriter::alignNone, "A folder", 16, 16);
    page.OpenForm("go", "find");
    page.AddFormattedText("<label>Name ");
    page.AddSingleLineTextField("name", 10);
    page.AddFormattedText("</label>");
    page.CloseForm();
}

void AddSection(CHtmlWriter& page, const char* title, const char* text) {
    page.AddDropdownTitle(2, title);
    page.StartDropdownText();
    page.AddBookmark(text);
    page.AddParagraph(text);
    page.EndDropdownText();
}

void WriteSections(CHtmlWriter& page) {
    page.SetDropdowns(0, "");
    AddSection(page, "No section", "plain");
    page.SetDropdowns(1, "assets");
    for (const char* const text : {"one", "two", "three"}) AddSection(page, "A <section>", text);
    page.AddDropdownCookie();
}

void WriteSingleSection(CHtmlWriter& page) {
    page.SetDropdowns(1, "assets\\");
    AddSection(page, "Alone", "one");
    page.AddDropdownCookie();
}

void WritePopups(CHtmlWriter& page) {
    page.AddPopupScript();
    page.AddGlossarizedParagraph("Cats, a dog and the cat's category & a DOG.", {"dog", "CAT"},
                                 {"it's <b>", "\"A\\pet\"\r\nof \xA0 ours"});
    page.AddFormattedText("<p style=\"position:absolute;right:8px;bottom:8px\">");
    page.AddFormattedText(CHtmlWriter::GetGlossarizedText("dog", {"dog"}, {"in the corner"}));
    page.AddFormattedText("</p>");
}

void WriteQuickMenu(CHtmlWriter& page) {
    page.AddQuickMenuScript();
    page.OpenQuickMenu("Menu & more");
    page.AddQuickMenuLink("#a", "<A>");
    page.AddQuickMenuLink("#b", "B");
    page.StartQuickMenuPage();
    page.AddFormattedText("<div style=\"height:5000px\">Long</div>");
    page.CloseQuickMenu();
}

void AddOrder(CHtmlWriter& page, const char* id, int option, int allowRollup) {
    COptionNavBar bar;
    bar.SetName("Order & size");
    bar.SetCommand("order?by=");
    bar.SetOptions({"Name", "<Size>", "Date"});
    bar.SetOption(option);
    bar.SetRollupGuid(id);
    bar.SetAllowRollup(allowRollup);
    bar.SetSelectionImage(allowRollup ? "assets/closed.gif" : "");
    bar.GenerateHtml(page);
}

void WriteBars(CHtmlWriter& page) {
    CNavBar::AddRollupScript("assets\\rolledup.gif", "assets\\rolleddown.gif", page);
    AddOrder(page, "B1", 1, 1);
    AddOrder(page, "B2", 7, 1);
    AddOrder(page, "B3", 0, 0);
    CNavBar::AddRollupScriptCookie(page);
}

void WriteSingleBar(CHtmlWriter& page) {
    CNavBar::AddRollupScript("assets\\rolledup.gif", "assets\\rolleddown.gif", page);
    AddOrder(page, "B1", 1, 1);
    CNavBar::AddRollupScriptCookie(page);
}

void WriteTree(CHtmlWriter& page) {
    CHtmlTreeNode::SetImageDir("assets\\\\");
    CHtmlTreeBuilder tree;
    page.OpenTag("html", "lang=\"en\"");
    page.OpenTag("head");
    page.AddTitleToHead("Tree", "assets\\qvcommon.css");
    page.AddFormattedText(tree.GetDropdownScript("assets"));
    page.CloseTag("head");
    page.OpenTag("body");
    tree.SetSelectedStyle("treeMenuSelected");
    CHtmlTreeNode* const fruit = tree.AddNode(new CHtmlTreeNode("Fruit", "", "#fruit", 0));
    CHtmlTreeNode* const apples = fruit->AddNode(new CHtmlTreeNode("Apples", "", "", 0));
    apples->AddNode(new CHtmlTreeNode("Cox\\x27s <b>Orange</b>", "assets/open.gif", "#cox", 1));
    fruit->AddNode(new CHtmlTreeNode("Pears", "", "#pears", 0))
        ->AddNode(new CHtmlTreeNode("Conference", "", "#conference", 0));
    tree.SetTargetFrame("_self");
    page.AddFormattedText(tree.GetHtml());
    page.CloseTag("body");
    page.CloseTag("html");
}

// Texts that would call a function, end an element or break a string if they got through, in every place that takes a text.
constexpr const char* kHostile[] = {"<script>harm()</script>",
                                    "\"onclick=\"harm()",
                                    "'onclick='harm()",
                                    "</title></td>-->]]><!--",
                                    "&lt;&#60;&amp;lt;&nbsp",
                                    "\\'\\\\');harm();('\\",
                                    "\x01\x7F\xC3\xA9\xFF\xC3",
                                    "a\r\nb",
                                    "');harm();(\"",
                                    "${harm()}`",
                                    "\"><img src=x onerror=harm()>",
                                    "</script><script>harm()</script>",
                                    "javascript:harm()",
                                    "\xE2\x80\xA8harm()"};

CString Hex(std::string_view text) {
    CString hex;
    for (const char c : text) hex += CStringHelper::Format("%02x", static_cast<unsigned char>(c));
    return hex;
}

void AddEverywhere(CHtmlWriter& page, const char* text) {
    page.OpenTag("article", "data-text=\"" + Hex(text) + '"');
    page.AddDropdownTitle(3, text);
    page.StartDropdownText();
    page.EndDropdownText();
    page.OpenQuickMenu(text);
    page.AddQuickMenuLink("#", text);
    page.StartQuickMenuPage();
    page.CloseQuickMenu();
    COptionNavBar bar;
    bar.SetName(text);
    bar.SetRollupGuid("B" + Hex(text));
    bar.SetOptions({text});
    bar.GenerateHtml(page);
    page.AddGlossarizedParagraph(CString(text) + " term", {"term"}, {text});
    page.CloseTag("article");
}

void WriteHostile(CHtmlWriter& page) {
    page.AddPopupScript();
    page.SetDropdowns(1, "assets");
    CNavBar::ms_strRolledUpImage = "assets/rolledup.gif";
    for (const char* const text : kHostile) AddEverywhere(page, text);
    page.AddDropdownCookie();
}

constexpr Sample kSamples[] = {{"elements", WriteElements, "Elements"},
                               {"sections", WriteSections, "Sections", nullptr, "assets"},
                               {"section", WriteSingleSection, "One section", nullptr, "assets\\"},
                               {"popups", WritePopups, "Glossary"},
                               {"quickmenu", WriteQuickMenu, "Quick menu", "onscroll=\"scrollMenu()\""},
                               {"bars", WriteBars, "Bars"},
                               {"bar", WriteSingleBar, "One bar"},
                               {"tree", WriteTree},
                               {"hostile", WriteHostile, kHostile[0], nullptr, "assets"}};

}  // namespace

void Sample::Write(CHtmlWriter& page) const {
    if (!title) return write(page);
    page.OpenTag("html", "lang=\"en\"");
    page.AddTitle(title, "assets\\qvcommon.css", nullptr, imageDirectory);
    page.OpenTag("body", bodyAttributes);
    write(page);
    page.CloseTag("body");
    page.CloseTag("html");
}

std::span<const Sample> SamplePages() {
    return kSamples;
}
