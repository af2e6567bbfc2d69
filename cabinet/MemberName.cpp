#include "cabinet/MemberName.h"

#include <algorithm>

#include "cabinet/Format.h"
#include "platform/Text.h"
#include "platform/Utf8.h"

namespace qv::cabinet {

CString WithBackslashes(const char* path) {
    CString text = path;
    text.Replace('/', '\\');
    return text;
}

bool NeedsUtf8(const CString& name) {
    return std::ranges::any_of(name.AsStd(), [](char c) { return static_cast<unsigned char>(c) > 127; });
}

CString ToMemberName(const CString& name) {
    if (!NeedsUtf8(name)) return name;
    std::string stored = platform::WideToUtf8(platform::ToWide(name));
    std::size_t length = std::min(stored.size(), kLongestName - 1);
    const auto splitsCharacter = [&] { return length < stored.size() && (stored[length] & 0xC0) == 0x80; };
    while (splitsCharacter()) --length;
    stored.resize(length);
    return CString(std::move(stored));
}

CString FromMemberName(const CString& name) {
    if (!NeedsUtf8(name)) return name;
    CString text(platform::FromWide(platform::Utf8ToWide(name)));
    text.Replace('?', '_');
    return text;
}

}  // namespace qv::cabinet
