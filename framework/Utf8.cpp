#include "qvcommon/framework/Utf8.h"

#include "platform/Text.h"
#include "platform/Utf8.h"

using qv::platform::CurrentCodePage;

CString QVCOMMON_CALL QvToUtf8(std::string_view text) {
    if (CurrentCodePage() == qv::platform::CodePage::Utf8) return CString(text);
    return CString(qv::platform::WideToUtf8(qv::platform::ToWide(text)));
}

CString QVCOMMON_CALL QvFromUtf8(std::string_view utf8) {
    return CString(qv::platform::FromWide(qv::platform::Utf8ToWide(utf8)));
}
