// Escaping must equal its successive replacements, and be reversible.

#include "fuzz/FuzzInput.h"
#include "platform/Text.h"
#include "qvcommon/CodePage.h"
#include "qvcommon/XmlHelper.h"

namespace {

bool IsSingleByte() {
    return qv::platform::CurrentCodePage() == qv::platform::CodePage::SingleByte;
}

CString ChainClean(CString text) {
    text.Replace("&", "&amp;");
    text.Replace("<", "&lt;");
    text.Replace(">", "&gt;");
    for (int byte = 0x80; byte <= 0x9F; ++byte)
        text.Replace(CString(static_cast<char>(byte)), "&#" + CString(std::to_string(byte)) + ";");
    return text;
}

CString ChainDirty(CString text) {
    for (int byte = 0x80; byte <= 0x9F; ++byte)
        text.Replace("&#" + CString(std::to_string(byte)) + ";", CString(static_cast<char>(byte)));
    text.Replace("\n", "\r\n");
    text.Replace("&gt;", ">");
    text.Replace("&lt;", "<");
    text.Replace("&amp;", "&");
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    _setmbcp(input.Flag() ? 65001 : 1252);
    const CString text(input.Rest());
    const CString clean = CXmlHelper::Clean(text);
    CString lines = text;
    lines.Replace("\n", "\r\n");
    Require(CXmlHelper::Dirty(clean) == lines, "texts come back");
    Require(CXmlHelper::DirtyAttribute(CXmlHelper::CleanAttribute(text)) == lines, "attributes come back");
    Require(clean.FindOneOf("<>") < 0, "no markup is left");
    if (IsSingleByte()) Require(clean == ChainClean(text), "as its replacements");
    Require(CXmlHelper::Dirty(text) == ChainDirty(text), "back as its replacements");
    return 0;
}
