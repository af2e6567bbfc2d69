// The text of a page must equal its step-by-step definition, and stripping must leave no tags.
#include <cstdlib>

#include "qvcommon/CodePage.h"
#include "qvcommon/HtmlWriter.h"
#include "qvcommon/Replacers.h"
#include "tests/support/ReplacementChain.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size == 0) return 0;
    _setmbcp(data[0] & 1 ? 65001 : 1252);
    const CString page(std::string_view(reinterpret_cast<const char*>(data) + 1, size - 1));
    if (CHtmlWriter::HtmlToPlainText(page) != qv::test::ChainPlainText(page)) std::abort();
    const CString stripped = CStripTag().ReplaceEscapes(page);
    const int open = stripped.Find('<');
    if (open >= 0 && stripped.Find('>', open) >= 0) std::abort();
    return 0;
}
