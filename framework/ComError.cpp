#include "qvcommon/framework/ComError.h"

namespace {

CString MessageOf(HRESULT error) {
    switch (error) {
        case _com_error::kPointer: return "Invalid pointer";
        case _com_error::kFail: return "Unspecified error";
        case _com_error::kInvalidArg: return "The parameter is incorrect";
        case _com_error::kOutOfMemory: return "Not enough memory";
    }
    CString text;
    text.Format("Unknown error 0x%08X", static_cast<std::uint32_t>(error));
    return text;
}

}  // namespace

_com_error::_com_error(HRESULT error, CString description)
    : m_error(error), m_message(MessageOf(error)), m_description(std::move(description)) {}

_com_error::~_com_error() = default;

void _com_raise_error(HRESULT error, const char* description) {
    throw _com_error(error, description);
}
