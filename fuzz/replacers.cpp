
#include "qvcommon/Replacers.h"
#include "fuzz/FuzzInput.h"
#include "qvcommon/CodePage.h"
#include "qvcommon/StringHelper.h"

namespace {

// A reference implementation with plain searches.
std::string Walk(std::string_view text, std::string_view start, std::string_view end, bool caseSensitive) {
    const CString source(text);
    const auto find = [&](std::string_view marker, int from) {
        return caseSensitive ? source.Find(marker, from) : CStringHelper::FindNoCase(source, marker, from);
    };
    CString out;
    int copied = 0, search = 0;
    for (;;) {
        const int at = start.empty() ? -1 : find(start, search);
        if (at < 0) break;
        out += source.Mid(copied, at - copied) + "(";
        copied = at + static_cast<int>(start.size());
        const int close = find(end, copied);
        if (close < 0) break;
        out += source.Mid(copied, close - copied) + ")";
        copied = close + static_cast<int>(end.size());
        search = close;
    }
    return (out + source.Mid(copied)).AsStd();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const bool utf8 = input.Flag(), caseSensitive = input.Flag();
    _setmbcp(utf8 ? 65001 : 1252);
    const std::string_view start = input.Text(), end = input.Text(), text = input.Rest();

    CEscapedStringReplacer replacer;
    replacer.SetStartFind(start);
    replacer.SetStartReplace("(");
    replacer.SetEndFind(end);
    replacer.SetEndReplace(")");
    replacer.SetCaseSentitive(caseSensitive);
    const CString result = replacer.ReplaceEscapes(text);
    // Case-insensitively, a match in UTF-8 may be longer than the marker.
    if (caseSensitive || !utf8)
        Require(result.AsStd() == Walk(text, start, end, caseSensitive), "ReplaceEscapes follows its rule");

    CStringArray inner;
    CGetEscapedStrings collector(inner);
    collector.SetStartFind(start);
    collector.SetEndFind(end);
    Require(collector.ReplaceEscapes(text).GetLength() <= static_cast<int>(text.size()), "collecting only removes");
    CStripTag().ReplaceEscapes(text);
    return 0;
}
