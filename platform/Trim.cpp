#include <algorithm>

#include "platform/Text.h"

namespace qv::platform {
namespace {

bool IsSpaceAt(std::string_view text, std::size_t position, std::size_t length) {
    return IsSpace(text.substr(position, length));
}

// Finds the start of the last character of a UTF-8 text. No byte that starts a character is part of another one, so
// scanning back over four bytes finds the same characters as walking from the front.
std::size_t LastCharacter(std::string_view text) {
    const std::size_t reach = std::min<std::size_t>(text.size(), 4);
    for (std::size_t back = 2; back <= reach; ++back)
        if (CharacterLength(text, text.size() - back, CodePage::Utf8) == back) return text.size() - back;
    return text.size() - 1;
}

// Trail bytes look like other characters, so the scan must start at the front.
std::string_view TrimmedRightForward(std::string_view text) {
    std::size_t kept = 0;
    for (std::size_t i = 0, length = 0; i < text.size(); i += length) {
        length = CharacterLength(text, i, CodePage::DoubleByte);
        if (!IsSpaceAt(text, i, length)) kept = i + length;
    }
    return text.substr(0, kept);
}

}  // namespace

std::string_view TrimmedLeft(std::string_view text) {
    const CodePage page = CurrentCodePage();
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t length = CharacterLength(text, start, page);
        if (!IsSpaceAt(text, start, length)) break;
        start += length;
    }
    return text.substr(start);
}

std::string_view TrimmedRight(std::string_view text) {
    const CodePage page = CurrentCodePage();
    if (page == CodePage::DoubleByte) return TrimmedRightForward(text);
    while (!text.empty()) {
        const std::size_t last = page == CodePage::Utf8 ? LastCharacter(text) : text.size() - 1;
        if (!IsSpace(text.substr(last))) break;
        text = text.substr(0, last);
    }
    return text;
}

}  // namespace qv::platform
