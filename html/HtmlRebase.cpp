#include "html/AddressBase.h"
#include "qvcommon/HtmlWriter.h"

namespace {

using qv::html::AddressBase;

// The base of the page's relative addresses. A longer address in the page's "base" element is ignored, because it would
// be added to every address of the page.
constexpr int kLongestBaseAddress = 1024;

AddressBase BaseFor(const CHtmlDocument& document, std::string_view newBase) {
    const AddressBase base = AddressBase::FromCaller(newBase);
    const CString own = document.GetBaseAddress();
    return own.GetLength() > kLongestBaseAddress ? base : base.Within(own);
}

bool Rebase(CHtmlDocument& document, int element, std::string_view attribute, const AddressBase& base) {
    const auto joined = base.Join(document.GetOriginalAddress(element, attribute));
    return joined && document.SetAddress(element, attribute, *joined);
}

int RebaseAll(CHtmlDocument& document, std::string_view tag, std::string_view attribute, const AddressBase& base) {
    int count = 0;
    for (int element = 0; element < document.GetElementCount(); ++element)
        if (tag.empty() || document.GetTag(element) == tag) count += Rebase(document, element, attribute, base) ? 1 : 0;
    return count;
}

}  // namespace

CHtmlDocument CHtmlWriter::LoadDocument(std::string_view html) {
    return CHtmlDocument(html);
}

bool CHtmlWriter::RebaseElement(CHtmlDocument& document, int element, std::string_view attribute,
                                std::string_view newBase) {
    return Rebase(document, element, attribute, BaseFor(document, newBase));
}

int CHtmlWriter::RebaseCollection(CHtmlDocument& document, std::string_view tag, std::string_view attribute,
                                  std::string_view newBase) {
    return RebaseAll(document, tag, attribute, BaseFor(document, newBase));
}

CString CHtmlWriter::GetRebasedBody(std::string_view html, std::string_view newBase) {
    CHtmlDocument document(html);
    const AddressBase base = BaseFor(document, newBase);
    for (const std::string_view attribute : CHtmlDocument::GetAddressAttributes())
        RebaseAll(document, {}, attribute, base);
    return document.GetBody();
}
