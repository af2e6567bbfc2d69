#include "xml/dom/libxml2/Problem.h"

namespace qv::dom {
namespace {

MSXML2::IXMLDOMParseError ProblemOf(const xmlError& error) {
    constexpr std::uint32_t facility = 0xC00CE000;  // where a COM DOM's parse errors lie
    std::string reason = FromUtf8(error.message ? error.message : "");
    while (!reason.empty() && reason.back() == '\n') reason.pop_back();
    return {static_cast<HRESULT>(facility | (static_cast<std::uint32_t>(error.code) & 0xFFF)), reason, error.line,
            error.int2};
}

}  // namespace

void FirstError::Take(void* data, xmlError* error) {
    auto* const context = static_cast<xmlParserCtxt*>(data);
    auto& self = *static_cast<FirstError*>(context->_private);
    const bool serious =
        error->level == XML_ERR_FATAL || (error->domain == XML_FROM_NAMESPACE && error->level == XML_ERR_ERROR);
    if (!serious || self.problem.get_errorCode() != 0) return;
    self.problem = ProblemOf(*error);
    xmlStopParser(context);
}

}  // namespace qv::dom
