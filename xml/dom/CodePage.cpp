#include "xml/dom/CodePage.h"

#include "platform/Ascii.h"
#include "platform/Text.h"
#include "qvcommon/framework/Utf8.h"

namespace qv::dom {
namespace {

// U+0080 to U+009F are C2 80 to C2 9F in UTF-8.
std::size_t FindControl(std::string_view utf8, std::size_t from) {
    while ((from = utf8.find('\xC2', from)) != utf8.npos) {
        if (from + 1 < utf8.size() && static_cast<unsigned char>(utf8[from + 1]) <= 0x9F) return from;
        ++from;
    }
    return utf8.npos;
}

std::string Converted(std::string_view utf8) {
    return QvFromUtf8(utf8).AsStd();
}

}  // namespace

std::string ToUtf8(std::string_view text) {
    if (ascii::IsAscii(text) || CodePageHoldsAll()) return std::string(text);
    return QvToUtf8(text).AsStd();
}

std::string ToCodePage(std::string_view utf8) {
    if (ascii::IsAscii(utf8) || CodePageHoldsAll()) return std::string(utf8);
    if (platform::CurrentCodePage() != platform::CodePage::SingleByte) return Converted(utf8);
    std::string out;
    std::size_t from = 0;
    for (std::size_t i; (i = FindControl(utf8, from)) != utf8.npos; from = i + 2)
        (out += Converted(utf8.substr(from, i - from))) += utf8[i + 1];
    return out += Converted(utf8.substr(from));
}

bool CodePageHolds(std::string_view character) {
    return ToUtf8(Converted(character)) == character;
}

bool CodePageHoldsAll() {
    return platform::CurrentCodePage() == platform::CodePage::Utf8;
}

}  // namespace qv::dom
