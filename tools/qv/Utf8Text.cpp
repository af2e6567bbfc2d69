#include "tools/qv/Utf8Text.h"

namespace qv::tool {

Utf8Character FirstCharacter(std::string_view utf8) {
    constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    const auto first = static_cast<unsigned char>(utf8[0]);
    if (first < 0x80) return {first, 1};
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || utf8.size() < length) return {first, 0};
    char32_t code = first & (0x7F >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((utf8[i] & 0xC0) != 0x80) return {first, 0};
        code = code << 6 | (utf8[i] & 0x3F);
    }
    const bool isSurrogate = code >= 0xD800 && code < 0xE000;
    return code < kLeast[length] || code > 0x10FFFF || isSurrogate ? Utf8Character{first, 0}
                                                                   : Utf8Character{code, length};
}

}  // namespace qv::tool
