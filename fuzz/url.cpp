#include "fuzz/FuzzInput.h"
#include "qvcommon/StringHelper.h"
#include "tests/support/TextOracles.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = FuzzInput(data, size).Rest();
    CString escaped = CStringHelper::Escape(text);
    CStringHelper::Unescape(escaped);
    Require(std::string_view(escaped) == text, "Unescape undoes Escape");

    CString unescaped(text);
    CStringHelper::Unescape(unescaped);
    Require(unescaped.GetLength() <= static_cast<int>(size), "Unescape makes nothing longer");
    const CString decoded = CStringHelper::UnEscapeUrl(text);
    if (size < 1000) Require(decoded.AsStd() == oracle::UnEscapeUrl(std::string(text)), "UnEscapeUrl follows its rule");

    CStringArray names, values;
    CStringHelper::ParseRawHttpParams(text, names, values);
    Require(names.GetSize() == values.GetSize(), "each name has a value");
    CStringHelper::RemoveFileProtocol(text.substr(0, 200), 1, 0);
    return 0;
}
