// Rebasing changes only addresses, keeps the page's structure, and is idempotent.
#include <cstdlib>

#include "qvcommon/HtmlWriter.h"

namespace {

void Check(bool holds) {
    if (!holds) std::abort();
}

void RebaseAll(CHtmlDocument& page, std::string_view base) {
    for (const std::string_view attribute : CHtmlDocument::GetAddressAttributes())
        CHtmlWriter::RebaseCollection(page, "", attribute, base);
}

// The rebased page has the same elements, and restoring the old addresses restores the page.
void CheckRestores(const CHtmlDocument& before, const CString& rebased) {
    CHtmlDocument after(rebased);
    Check(after.GetElementCount() == before.GetElementCount());
    for (int i = 0; i < before.GetElementCount(); ++i) {
        Check(after.GetTag(i) == before.GetTag(i));
        for (const std::string_view attribute : CHtmlDocument::GetAddressAttributes()) {
            Check(after.GetAddress(i, attribute) == before.GetAddress(i, attribute));
            after.SetAddress(i, attribute, before.GetOriginalAddress(i, attribute));
        }
    }
    CHtmlDocument untouched = before;
    for (int i = 0; i < before.GetElementCount(); ++i)
        for (const std::string_view attribute : CHtmlDocument::GetAddressAttributes())
            untouched.SetAddress(i, attribute, before.GetOriginalAddress(i, attribute));
    Check(after.GetHtml() == untouched.GetHtml());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::size_t cut = text.find('\n');
    const std::string_view page = cut == text.npos ? text : text.substr(cut + 1), own = text.substr(0, cut);
    for (const std::string_view base : {std::string_view("http://h/d/x"), std::string_view("C:\\d e\\"),
                                        std::string_view("/srv"), std::string_view("..\\p"), own}) {
        CHtmlDocument document(page);
        Check(document.GetHtml() == page);
        RebaseAll(document, base);
        const CString rebased = document.GetHtml();
        CheckRestores(document, rebased);
        if (base == "http://h/d/x" || base == "C:\\d e\\" || base == "/srv") {
            CHtmlDocument again(rebased);
            RebaseAll(again, base);
            Check(again.GetHtml() == rebased);
        }
        CHtmlWriter::GetRebasedBody(page, base);
    }
    return 0;
}
