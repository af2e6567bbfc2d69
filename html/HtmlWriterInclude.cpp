#include <algorithm>
#include <optional>

#include "qvcommon/HtmlWriter.h"
#include "qvcommon/Replacers.h"

namespace {

// Returns nullopt if the file cannot be read to its end.
std::optional<std::string> ReadPage(const char* path) {
    std::string page;
    try {
        CStdioFile file(path, CFile::modeRead | CFile::shareDenyWrite | CFile::typeText);
        for (CString line; file.ReadString(line);) page.append(line.AsStd()) += '\n';
    } catch (CFileException* error) {
        error->Delete();
        return std::nullopt;
    }
    return page;
}

std::size_t FindEither(std::string_view text, std::string_view mark, std::string_view other) {
    const std::size_t found = text.find(mark);
    return found != text.npos ? found : text.find(other);
}

// Returns the text between the body tags, or the whole page if it has none. Deliberately simple for compatibility: tags
// in mixed case are not found, and those in comments are.
std::string_view BodyOf(std::string_view page) {
    const std::size_t tag = FindEither(page, "<body", "<BODY");
    const std::size_t begin = tag == page.npos ? tag : page.find('>', tag + 1);
    if (begin == page.npos) return page;
    const std::size_t end = std::min(FindEither(page, "</body>", "</BODY>"), page.size());
    return end > begin ? page.substr(begin + 1, end - begin - 1) : std::string_view();
}

}  // namespace

int CHtmlWriter::AddHtmlFile(const char* path) {
    const auto page = ReadPage(path);
    if (!page) return 0;
    AddFormattedText(BodyOf(*page));
    return 1;
}

CString CHtmlWriter::GetFileBodyWords(const char* path) {
    CHtmlWriter page;
    page.AddHtmlFile(path);
    return Dirty(CStripTag().ReplaceEscapes(page.GetHtml()));
}
