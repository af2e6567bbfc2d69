#include <algorithm>

#include "core/CaselessReplacement.h"
#include "core/RepeatedReplacement.h"
#include "core/TextSearch.h"
#include "framework/ExactSearch.h"
#include "qvcommon/StringHelper.h"

using qv::platform::CharacterLength;

namespace {

// Returns the longest prefix of at most `width` bytes that splits no character, but at least one character.
std::size_t WholeCharacters(std::string_view text, std::size_t width) {
    const auto page = qv::platform::CurrentCodePage();
    if (page == qv::platform::CodePage::SingleByte) return std::min(width, text.size());
    std::size_t taken = 0;
    while (taken < text.size()) {
        const std::size_t length = CharacterLength(text, taken, page);
        if (taken > 0 && taken + length > width) break;
        taken += length;
    }
    return taken;
}

struct Line {
    std::size_t length, next;  // the visible length, and the start of the next line
};

Line NextLine(std::string_view text, std::size_t width) {
    const std::string_view look = text.substr(0, width);
    const std::size_t lineEnd = look.find('\n');
    if (lineEnd != look.npos) return {lineEnd, lineEnd + 1};
    const std::size_t space = look.rfind(' ');
    if (space != look.npos && space > 0) return {space, space + 1};
    const std::size_t cut = WholeCharacters(text, width);
    return {cut, cut};
}

}  // namespace

int CStringHelper::FindNoCase(std::string_view text, std::string_view find, int start) {
    const std::size_t from = start > 0 ? static_cast<std::size_t>(start) : 0;
    const qv::Occurrence found = qv::TextSearch(text, find, qv::CaseRule::Ignore).Find(from);
    return found ? static_cast<int>(found.position) : -1;
}

void CStringHelper::ReplaceNoCase(CString& text, std::string_view find, std::string_view replacement) {
    if (!find.empty()) text = CString(qv::CaselessReplacement(find, replacement).Apply(text));
}

void CStringHelper::ReplaceAll(CString& text, std::string_view find, std::string_view replacement) {
    if (find.empty() || qv::FindExact(replacement, find) != replacement.npos)
        text.Replace(find, replacement);
    else
        qv::RepeatedReplacement(std::string(find), std::string(replacement)).Run(text.AsStd());
}

CString CStringHelper::ReplaceBetween(std::string_view text, std::string_view startMarker, std::string_view endMarker,
                                      std::string_view replacement) {
    qv::ExactSearch starts(text, startMarker), ends(text, endMarker);
    std::string out;
    std::size_t from = 0;
    std::size_t start = startMarker.empty() ? text.npos : starts.Find(0);
    while (start != text.npos) {
        const std::size_t inner = start + startMarker.size(), end = ends.Find(inner);
        if (end == text.npos) break;
        out.append(text.substr(from, inner - from)).append(replacement);
        from = end;
        start = starts.Find(from);
    }
    return out.append(text.substr(from));
}

CString CStringHelper::MakeMultiLine(std::string_view text, int width) {
    CString source(text);
    source.Replace("\r\n", "\n");
    const CString trimmed = TrimString(source);
    const std::size_t columns = static_cast<std::size_t>(std::max(width, 1));
    std::string_view rest = trimmed;
    CString out;
    while (rest.size() > columns) {
        const Line line = NextLine(rest, columns);
        if (line.next == rest.size()) break;  // a last character that is wider than the line
        out += rest.substr(0, line.length);
        out += '\n';
        rest.remove_prefix(line.next);
    }
    out += rest;
    out.Replace("\n", "\r\n");
    return out;
}
