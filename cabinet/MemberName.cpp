#include "cabinet/MemberName.h"

#include <algorithm>

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
    return NeedsUtf8(name) ? CString(platform::WideToUtf8(platform::ToWide(name))) : name;
}

CString FromMemberName(const CString& name) {
    if (!NeedsUtf8(name)) return name;
    CString text(platform::FromWide(platform::Utf8ToWide(name)));
    text.Replace('?', '_');
    return text;
}

}  // namespace qv::cabinet
