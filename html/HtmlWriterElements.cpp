#include "qvcommon/HtmlWriter.h"

namespace {

const char* AlignAttribute(CHtmlWriter::enumAlign align) {
    switch (align) {
        case CHtmlWriter::alignLeft: return "ALIGN=LEFT";
        case CHtmlWriter::alignCenter: return "ALIGN=CENTER";
        case CHtmlWriter::alignRight: return "ALIGN=RIGHT";
        default: return "";
    }
}

CString HeadingTag(int level) {
    CString tag;
    tag.Format("h%d", level);
    return tag;
}

}  // namespace

void CHtmlWriter::AddTitle(const char* title, const char* stylesheet, const char* headTag,
                           const char* dropdownImageDir) {
    AddFormattedText("<head>");
    AddTitleToHead(title, stylesheet, headTag, dropdownImageDir);
    AddFormattedText("</head>");
}

void CHtmlWriter::AddTitleToHead(const char* title, const char* stylesheet, const char* headTag,
                                 const char* dropdownImageDir) {
    AddFormattedText("<Title>");
    AddText(title);
    AddFormattedText("</Title>");
    if (stylesheet) {
        CString address(stylesheet), attributes;
        address.Replace('\\', '/');
        attributes.Format("rel=\"stylesheet\" type=\"text/css\" href=\"%s\"", address);
        AddTag("link", attributes);
    }
    if (headTag) AddTag(headTag, "");
    if (dropdownImageDir) AddDropdownScript(dropdownImageDir);
}

void CHtmlWriter::OpenHotlink(const char* url) {
    CString tag;
    tag.Format("<A href=\"%s\">", url);
    AddFormattedText(tag);
}

void CHtmlWriter::CloseHotlink() {
    AddFormattedText("</A>");
}

void CHtmlWriter::OpenBookmark(const char* name, const char* page) {
    CString tag;
    tag.Format("<A href=\"%s#%s\">", page ? page : "", CleanBookmark(name));
    AddFormattedText(tag);
}

void CHtmlWriter::CloseBookmark() {
    AddFormattedText("</A>");
}

void CHtmlWriter::AddBookmark(const char* name) {
    CString tag;
    tag.Format("<A Name=\"%s\"></A>", CleanBookmark(name));
    AddFormattedText(tag);
}

void CHtmlWriter::AddHeading(int level, std::string_view text, enumAlign align) {
    const CString tag = HeadingTag(level);
    if (align >= alignNone && align <= alignRight) OpenTag(tag, AlignAttribute(align));
    AddText(text);
    CloseTag(tag);
}

void CHtmlWriter::AddHeading(int level, std::string_view text, const char* attributes) {
    const CString tag = HeadingTag(level);
    OpenTag(tag, attributes);
    AddText(text);
    CloseTag(tag);
}

void CHtmlWriter::AddParagraph(std::string_view text, enumAlign align, const char* attributes) {
    CString all(attributes);
    const CString alignment(AlignAttribute(align));
    if (!alignment.IsEmpty()) all += ' ' + alignment;
    OpenTag("P", all);
    AddText(text);
    CloseTag("P");
}

void CHtmlWriter::AddBlankParagraph() {
    AddFormattedText("<P>&nbsp;</P>");
}

void CHtmlWriter::AddPreformattedParagraph(std::string_view text, const char* attributes) {
    OpenTag("pre", attributes);
    AddText(text);
    CloseTag("pre");
}

void CHtmlWriter::AddCode(std::string_view text) {
    CString code = Clean(text);
    code.Replace("\t", "&nbsp;&nbsp;&nbsp;&nbsp;");
    OpenTag("code");
    AddFormattedText(code);
    CloseTag("code");
}

void CHtmlWriter::AddLine(std::string_view text, const char* attributes) {
    OpenTag("li", attributes);
    AddFormattedText(text);
    CloseTag("li");
}

void CHtmlWriter::AddImage(const char* source, enumAlign align, const char* altText, int width, int height,
                           const char* extra) {
    CString alt, attributes;
    if (altText && *altText) alt.Format("alt=\"%s\"", CleanFloatOver(altText));
    if (!extra) extra = "";
    if (width == 0 || height == 0)
        attributes.Format("border=\"0\" src=\"%s\" %s %s %s", source, AlignAttribute(align), alt, extra);
    else
        attributes.Format("border=\"0\" src=\"%s\" %s %s WIDTH=\"%d\" HEIGHT=\"%d\" %s", source, AlignAttribute(align),
                          alt, width, height, extra);
    AddTag("img", attributes);
}
