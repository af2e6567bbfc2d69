// Text clean-up: takes a page from standard input and writes its words as a tidy list.
//
//   text_cleanup < page.html

#include <clocale>
#include <cstdio>

#include "qvcommon/Exceptions.h"
#include "qvcommon/HtmlWriter.h"
#include "qvcommon/Replacers.h"
#include "qvcommon/StringHelper.h"
#include "qvcommon/framework/StandardStreams.h"

// Rewrites what stands between two markers, here "[" and "]"; the markers themselves go.
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
    // Tags become line ends and blanks, entities the characters that they stand for.
    CString text = CHtmlWriter::HtmlToPlainText(page);
    text = Shouter().ReplaceEscapes(text);

    // ReplaceAll goes on until none is left: however many blanks there were, one remains.
    CStringHelper::ReplaceAll(text, "  ", " ");

    CStringArray lines;
    CStringHelper::SplitString(text, "\r\n", lines, 0);  // 0: without empty pieces
    CStringHelper::TrimItems(lines);
    CStringHelper::RemoveBlanks(lines);
    CStringHelper::RemoveDuplicates(lines, 1);  // 1: without regard to case, as flags named noCase have it
    CStringHelper::SortStringArray(lines, 0);   // by the collation of the locale, ascending
    return CStringHelper::MakeList(lines, 1, ", ") + "\n";
}

int main() {
    QvReportUncaught();
    std::setlocale(LC_ALL, "");  // decides what is a letter, what is upper case, and how texts sort
    AfxWriteStandardOutput(CleanUp(AfxReadStandardInput()));
}
