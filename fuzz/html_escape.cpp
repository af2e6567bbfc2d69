// Each kind of escaping must equal its successive replacements.
#include <cstdlib>

#include "qvcommon/CodePage.h"
#include "qvcommon/HtmlWriter.h"
#include "tests/support/ReplacementChain.h"

using namespace qv::test;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size == 0) return 0;
    constexpr int pages[] = {1252, 65001, 936};
    _setmbcp(pages[data[0] % std::size(pages)]);
    const CString text(std::string_view(reinterpret_cast<const char*>(data) + 1, size - 1));
    const bool same = CHtmlWriter::Clean(text) == ChainClean(text) &&
                      CHtmlWriter::CleanFloatOver(text) == ChainCleanFloatOver(text) &&
                      CHtmlWriter::CleanScriptParameter(text, 0) == ChainCleanScriptParameter(text, 0) &&
                      CHtmlWriter::CleanScriptParameter(text, 1) == ChainCleanScriptParameter(text, 1) &&
                      CHtmlWriter::Dirty(text) == ChainDirty(text);
    if (!same) std::abort();
    return 0;
}
