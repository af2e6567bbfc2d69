#include "qvcommon/HtmlWriter.h"

namespace {

CString Number(int value) {
    CString text;
    text.Format("%d", value);
    return text;
}

}  // namespace

void CHtmlWriter::OpenForm(const char* action, const char* command) {
    CString tag;
    tag.Format("<form method=\"POST\" action=\"%s\">", action);
    AddFormattedText(tag);
    AddHiddenField("MfcISAPICommand", command);
}

void CHtmlWriter::AddHiddenField(const char* name, const char* value) {
    CString attributes;
    attributes.Format("type=\"HIDDEN\" name=\"%s\" value=\"%s\"", name, value);
    AddTag("input", attributes);
}

void CHtmlWriter::AddHiddenField(const char* name, int value) {
    AddHiddenField(name, Number(value));
}

void CHtmlWriter::AddSingleLineTextField(const char* name, int size, const char* value) {
    // "type type" is kept for compatibility with existing pages; browsers ignore the first word.
    CString attributes;
    if (value)
        attributes.Format("type type=\"text\" name=\"%s\" size=\"%d\" value=\"%s\"", name, size, value);
    else
        attributes.Format("type type=\"text\" name=\"%s\" size=\"%d\"", name, size);
    AddTag("input", attributes);
}

void CHtmlWriter::AddSingleLineTextField(const char* name, int size, int value) {
    AddSingleLineTextField(name, size, Number(value));
}
