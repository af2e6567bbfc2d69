
#include "fuzz/FuzzInput.h"
#include "qvcommon/CodePage.h"
#include "qvcommon/StringHelper.h"
#include "tests/support/TextOracles.h"

namespace {

// If removing a separator can join stray bytes into characters, the stepwise and the whole-text rules may differ.
bool IsWellFormed(std::string_view text) {
    using namespace qv::platform;
    if (CurrentCodePage() == CodePage::SingleByte) return true;
    for (std::size_t i = 0; i < text.size(); i += CharacterLength(text, i, CodePage::Utf8))
        if (static_cast<unsigned char>(text[i]) >= 0x80 && CharacterLength(text, i, CodePage::Utf8) == 1) return false;
    return true;
}

CString ReplacedNoCase(std::string_view text, std::string_view find, std::string_view replacement) {
    CString copy(text);
    CStringHelper::ReplaceNoCase(copy, find, replacement);
    return copy;
}

CString ReplacedAll(std::string_view text, std::string_view find, std::string_view replacement) {
    CString copy(text);
    CStringHelper::ReplaceAll(copy, find, replacement);
    return copy;
}

void CheckReplaceNoCase(std::string_view text, std::string_view find, std::string_view replacement) {
    const CString result = ReplacedNoCase(text, find, replacement);
    const bool plain = IsWellFormed(text) && IsWellFormed(find) && IsWellFormed(replacement);
    if (!plain || oracle::FindNoCase(replacement, find, 1)) return;
    const auto want = oracle::ReplaceNoCase(std::string(text), find, replacement);
    Require(!want || result.AsStd() == *want, "ReplaceNoCase follows its rule");
}

// Replacing that does not end by itself is slow, so only few inputs try it.
void CheckReplaceAll(std::string_view text, std::string_view find, std::string_view replacement) {
    const bool onePass = replacement.find(find) != replacement.npos;
    const auto want = onePass ? std::nullopt : oracle::ReplaceAll(std::string(text), find, replacement);
    if (want)
        Require(ReplacedAll(text, find, replacement).AsStd() == *want, "ReplaceAll follows its rule");
    else if (onePass || text.size() % 16 == 15)
        ReplacedAll(text, find, replacement);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    _setmbcp(input.Flag() ? 65001 : 1252);
    const std::string_view find = input.Text(), replacement = input.Text(), text = input.Rest();

    const int found = CStringHelper::FindNoCase(text, find);
    if (text.size() <= 1000) {
        const auto want = oracle::FindNoCase(text, find, 0);
        Require(found == (want ? static_cast<int>(want->position) : -1), "FindNoCase follows its rule");
    }
    if (text.size() <= 300 && !find.empty()) {
        CheckReplaceNoCase(text, find, replacement);
        CheckReplaceAll(text, find, replacement);
    }
    CStringHelper::ReplaceBetween(text, find, replacement, "x");
    CStringHelper::MakeMultiLine(text, static_cast<int>(find.size()));
    CStringHelper::MakeTitleCase(text, 1, 0, find);
    return 0;
}
