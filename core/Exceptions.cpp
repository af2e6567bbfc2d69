#include "qvcommon/Exceptions.h"

#include <algorithm>
#include <string_view>

#include "platform/Error.h"
#include "qvcommon/framework/MessageBox.h"

IMPLEMENT_DYNAMIC(CVorbexException, CException)

namespace {

constexpr UINT kNoMessageAvailable = 0xF020;

template <class Exception>
Exception* MakeException(const CString& text, int severity, int code, int reportErrorCode) {
    auto* const exception = new Exception;
    exception->SetReportErrorCode(reportErrorCode);
    exception->SetCode(code);
    exception->SetText(text);
    exception->SetSeverity(severity);
    return exception;
}

}  // namespace

CVorbexException::~CVorbexException() = default;

CVorbexCancelException::~CVorbexCancelException() = default;

IErrorDetails::~IErrorDetails() = default;

BOOL CVorbexException::GetErrorMessage(char* text, UINT maximum, UINT*) {
    CString message;
    if (m_reportErrorCode)
        message.Format("%s (%d)", m_text, m_code);
    else
        message = m_text;
    const std::string_view shown = static_cast<const char*>(message);
    const std::size_t copied = shown.copy(text, maximum);
    std::fill(text + copied, text + maximum, '\0');
    return 1;
}

int CVorbexException::ReportError(UINT type, UINT fallbackId) {
    type |= static_cast<UINT>(m_severity);
    char text[513] = {};  // one more than the message may have, so that a long one is terminated too
    if (GetErrorMessage(text, sizeof text - 1)) return AfxMessageBox(text, type);
    return AfxMessageBox(fallbackId ? fallbackId : kNoMessageAvailable, type);
}

int CVorbexCancelException::ReportError(UINT, UINT) {
    return 0;
}

void ThrowQvException(const CString& text, int severity, int code, int reportErrorCode) {
    throw MakeException<CVorbexException>(text, severity, code, reportErrorCode);
}

void ThrowQvErrorException(unsigned long systemError, int severity, int code, int reportErrorCode) {
    ThrowQvException(qv::platform::ErrorMessage(systemError), severity, code, reportErrorCode);
}

void ThrowQvLastErrorException(int severity, int code, int reportErrorCode) {
    ThrowQvErrorException(qv::platform::LastError(), severity, code, reportErrorCode);
}

void ThrowQvCancelException() {
    throw MakeException<CVorbexCancelException>("User cancelled", 48, 0, 0);
}
