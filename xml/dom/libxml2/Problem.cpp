#include "xml/dom/libxml2/Problem.h"

#include "xml/dom/CodePage.h"

namespace qv::dom {

using MSXML2::IXMLDOMParseError;

IXMLDOMParseError ProblemOf(const xmlError& error) {
    constexpr std::uint32_t facility = 0xC00CE000;  // the facility of a COM DOM's parse errors
    std::string reason = ToCodePage(error.message ? error.message : "");
    while (!reason.empty() && reason.back() == '\n') reason.pop_back();
    return {static_cast<HRESULT>(facility | (static_cast<std::uint32_t>(error.code) & 0xFFF)), reason, error.line,
            error.int2};
}

ErrorSuppressor::ErrorSuppressor() : m_before(xmlStructuredError), m_context(xmlStructuredErrorContext) {
    xmlSetStructuredErrorFunc(nullptr, [](void*, xmlError*) {});
}

ErrorSuppressor::~ErrorSuppressor() {
    xmlSetStructuredErrorFunc(m_context, m_before);
}

}  // namespace qv::dom
