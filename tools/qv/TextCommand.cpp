#include <functional>
#include <limits>
#include <memory>

#include "qvcommon/HtmlWriter.h"
#include "qvcommon/Replacers.h"
#include "qvcommon/StringHelper.h"
#include "qvcommon/XmlHelper.h"
#include "qvcommon/framework/StandardStreams.h"
#include "tools/qv/Commands.h"

namespace qv::tool {
namespace {

using Filter = std::function<CString(const CString&)>;

Command AddFilter(Command text, const char* name, const char* description, const char* example, const Filter& filter) {
    Command command = text.Add(name, description);
    command.AddExample(example);
    command.SetAction([filter] { AfxWriteStandardOutput(filter(AfxReadStandardInput())); });
    return command;
}

// Splits a text at LF or CR LF; the final line end is optional.
CStringArray Lines(const CString& text) {
    CString plain = text;
    plain.Replace("\r\n", "\n");
    CStringArray lines;
    if (plain.IsEmpty()) return lines;
    CStringHelper::SplitString(plain, "\n", lines, 1);
    if (plain[plain.GetLength() - 1] == '\n') lines.RemoveAt(lines.GetUpperBound());
    return lines;
}

CString JoinLines(const CStringArray& lines) {
    CString text;
    for (const CString& line : lines) (text += line) += '\n';
    return text;
}

// The final line end is added by the shell and is not part of the last field.
CString WithoutFinalLineEnd(const CString& text) {
    for (const std::string_view end : {"\r\n", "\n"})
        if (CStringHelper::EndsWith(text, end, 1)) return text.Left(text.GetLength() - static_cast<int>(end.size()));
    return text;
}

CString SplitCsv(const CString& text) {
    CStringArray fields;
    CStringHelper::CsvToArray(WithoutFinalLineEnd(text), fields);
    return JoinLines(fields);
}

CString UrlUnescape(const CString& text) {
    CString result = text;
    CStringHelper::Unescape(result);
    return result;
}

void AddPageFilters(Command text) {
    AddFilter(text, "escape", "Escape for the text of a page; CR becomes <br>, LF is dropped",
              "echo -n 'a<b' | qv text escape", [](const CString& in) { return CHtmlWriter::Clean(in); });
    AddFilter(text, "unescape", "The inverse of escape", "echo 'a&lt;b' | qv text unescape",
              [](const CString& in) { return CHtmlWriter::Dirty(in); });
    AddFilter(text, "plain", "The text of a page, with line ends CR LF", "qv text plain < page.html",
              [](const CString& in) { return CHtmlWriter::HtmlToPlainText(in); });
}

void AddXmlFilters(Command text) {
    AddFilter(text, "xml-escape", "Escape for the text of an XML element", "echo -n 'a<b' | qv text xml-escape",
              [](const CString& in) { return CXmlHelper::Clean(in); });
    AddFilter(text, "xml-unescape", "The inverse of xml-escape; LF becomes CR LF",
              "echo 'a&lt;b' | qv text xml-unescape", [](const CString& in) { return CXmlHelper::Dirty(in); });
}

void AddSimpleFilters(Command text) {
    AddFilter(text, "strip-tags", "Replace every tag by a space, from \"<\" to \">\"",
              "echo 'a<b>c' | qv text strip-tags", [](const CString& in) { return CStripTag().ReplaceEscapes(in); });
    AddFilter(text, "url-escape", "Escape like a form's field in an address", "echo -n 'a b&c' | qv text url-escape",
              [](const CString& in) { return CStringHelper::Escape(in); });
    AddFilter(text, "url-unescape", "The inverse of url-escape", "echo 'a+b%26c' | qv text url-unescape", UrlUnescape);
    AddFilter(text, "title-case", "Capitalize every word, with the rest in lower case",
              "echo 'the END' | qv text title-case",
              [](const CString& in) { return CStringHelper::MakeTitleCase(in); });
}

void AddLineFilters(Command text) {
    AddFilter(text, "csv-split", "Write each field of a comma-separated record on its own line",
              "echo 'x,\"y,z\"' | qv text csv-split", SplitCsv);
    AddFilter(text, "csv-join", "Join lines to a comma-separated record", "ls | qv text csv-join",
              [](const CString& in) { return CStringHelper::ArrayToCsv(Lines(in)); });

    const auto descending = std::make_shared<bool>(false);
    AddFilter(text, "sort", "Sort lines by the rules of the current locale", "ls | qv text sort --descending",
              [descending](const CString& in) {
                  CStringArray lines = Lines(in);
                  CStringHelper::SortStringArray(lines, *descending);
                  return JoinLines(lines);
              })
        .AddFlag("--descending", *descending, "Sort in descending order");
}

void AddWrap(Command text) {
    const auto width = std::make_shared<int>(0);
    AddFilter(text, "wrap", "Break the text into lines; all line ends become CR LF", "qv text wrap 72 < letter.txt",
              [width](const CString& in) { return CStringHelper::MakeMultiLine(in, *width); })
        .AddOption("WIDTH", *width, "The longest line, in bytes")
        .Require()
        .Between(1, std::numeric_limits<int>::max());
}

}  // namespace

void AddText(Command app) {
    Command text = app.AddFamily("text", "Pass standard input through a filter to standard output");
    text.AddExample("qv text wrap 72 < letter.txt");
    AddPageFilters(text);
    AddXmlFilters(text);
    AddSimpleFilters(text);
    AddLineFilters(text);
    AddWrap(text);
}

}  // namespace qv::tool
