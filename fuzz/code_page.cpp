// Checks characters, case, conversions and searches in code pages of every kind against reference implementations.
#include <vector>

#include "fuzz/FuzzInput.h"
#include "platform/Text.h"
#include "qvcommon/CodePage.h"
#include "qvcommon/StringHelper.h"

namespace {

using namespace qv::platform;

// Returns the starts of the text's characters, and its end.
std::vector<std::size_t> Boundaries(std::string_view text, CodePage page) {
    std::vector<std::size_t> starts{0};
    while (starts.back() < text.size()) {
        const std::size_t length = CharacterLength(text, starts.back(), page);
        Require(length > 0 && starts.back() + length <= text.size(), "a character lies in its text");
        starts.push_back(starts.back() + length);
    }
    return starts;
}

// Finds the first match at character boundaries; except in double-byte code pages, the first match of bytes.
int FindByDefinition(std::string_view text, std::string_view find) {
    if (CurrentCodePage() != CodePage::DoubleByte) return static_cast<int>(text.find(find));
    const std::vector<std::size_t> starts = Boundaries(text, CodePage::DoubleByte);
    for (const std::size_t start : starts)
        if (text.substr(start).starts_with(find))
            for (const std::size_t end : starts)
                if (end == start + find.size()) return static_cast<int>(start);
    return -1;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr int pages[] = {932, 936, 949, 950, 20932, 54936, 1252, 1251, 28591, 65001};
    FuzzInput input(data, size);
    unsigned which = 0;
    for (int bit = 0; bit < 4; ++bit) which = 2 * which + input.Flag();
    Require(_setmbcp(pages[which % std::size(pages)]) == 0, "the code page is known");
    const std::string_view find = input.Text(), text = input.Rest();
    const CodePage page = CurrentCodePage();

    Boundaries(text, page);
    const std::u16string wide = ToWide(text);
    const std::string back = FromWide(wide);
    Require(ToWide(back) == wide, "what a code page holds comes back");
    Require(ToUpper(text).size() <= 3 * text.size() && ToLower(text).size() <= 3 * text.size(),
            "case keeps to its size");

    CString replaced(text);
    Require(replaced.Find(find) == FindByDefinition(text, find), "Find follows its rule");
    if (find.empty()) return 0;
    const int count = replaced.Replace(find, "");
    Require(count == CStringHelper::CountOf(text, find), "CountOf counts what Replace replaces");
    const CStringArray pieces = CStringHelper::SplitString(text, find, 1);
    Require(pieces.GetSize() == count + 1, "SplitString cuts where Replace replaces");
    Require(CStringHelper::MakeString(pieces, find, -1, 1) == text, "pieces joined are the text");
    return 0;
}
