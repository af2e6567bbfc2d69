// Text clean-up: reads a page from standard input and writes its words as a tidy list.
//
//   text_cleanup < page.html

#include <clocale>
#include <cstdio>

#include "qvcommon/Exceptions.h"
#include "qvcommon/HtmlWriter.h"
#include "qvcommon/Replacers.h"
#include "qvcommon/StringHelper.h"
#include "qvcommon/framework/StandardStreams.h"

// Rewrites the text between two markers, here "[" and "]", and removes the markers.
class Shouter : public CEscapedStringReplacer {
public:
    Shouter() {
        SetStartFind("[");
        SetEndFind("]");
    }

protected:
    CString GetEscapedText(std::string_view inner) override {
        CString text(inner);
        text.MakeUpper();
        return text;
    }
};

static CString CleanUp(const CString& page) {
    // Tags become line ends and spaces, entities become their characters.
    CString text = CHtmlWriter::HtmlToPlainText(page);
    text = Shouter().ReplaceEscapes(text);

    // ReplaceAll repeats until no match is left, so any run of spaces becomes one.
    CStringHelper::ReplaceAll(text, "  ", " ");

    CStringArray lines;
    CStringHelper::SplitString(text, "\r\n", lines, 0);  // 0: without empty items
    CStringHelper::TrimItems(lines);
    CStringHelper::RemoveBlanks(lines);
    CStringHelper::RemoveDuplicates(lines, 1);  // 1: ignoring case, as for all flags named noCase
    CStringHelper::SortStringArray(lines, 0);   // by the collation of the locale, ascending
    return CStringHelper::MakeList(lines, 1, ", ") + "\n";
}

int main() {
    QvReportUncaught();
    std::setlocale(LC_ALL, "");  // determines letters, upper case, and the sort order
    AfxWriteStandardOutput(CleanUp(AfxReadStandardInput()));
}
