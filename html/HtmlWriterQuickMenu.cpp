#include "html/QuickMenuScript.h"
#include "qvcommon/HtmlWriter.h"

void CHtmlWriter::AddQuickMenuScript() {
    AddFormattedText(qv::html::kQuickMenuScript);
}

void CHtmlWriter::OpenQuickMenu(std::string_view title) {
    OpenTag("div", "id=\"quickMenu\" style=\"position:absolute;\" height=\"100%\"");
    OpenTag("table", "width=130 border=0 cellpadding=0 id=\"menuHeadingTable\"");
    OpenTag("tr");
    OpenTag("td", "id=\"menuHeading\" class=\"mnuHeading\"");
    AddText(title);
    CloseTag("td");
    CloseTag("tr");
    CloseTag("table");
    OpenTag("table", "width=105 border=0 cellpadding=0 id=\"menuTable\" style=\"margin-left:25\"");
}

void CHtmlWriter::AddQuickMenuLink(const char* url, std::string_view text) {
    OpenTag("tr");
    OpenTag("td", "class=\"mnu\"");
    OpenHotlink(url);
    AddText(text);
    CloseHotlink();
    CloseTag("td");
    CloseTag("tr");
}

void CHtmlWriter::StartQuickMenuPage() {
    CloseTag("table");
    CloseTag("div");
    OpenTag("table", "width=\"100%\"");
    OpenTag("tr");
    OpenTag("td", "id=\"dummyCol\" width=\"130\"");
    OpenTag("span", "id=\"spacer\" style=\"margin-left:130\"");
    AddFormattedText("&nbsp;");
    CloseTag("span");
    CloseTag("td");
    OpenTag("td", "style=\"border-left-width:1 px;border-left-style:solid\"");
}

void CHtmlWriter::CloseQuickMenu() {
    CloseTag("td");
    CloseTag("tr");
    CloseTag("table");
}
