#include "qvcommon/framework/Exception.h"

#include <algorithm>
#include <cstring>

#include "framework/MessageText.h"
#include "qvcommon/framework/MessageBox.h"

IMPLEMENT_DYNAMIC(CException, CObject)
IMPLEMENT_DYNAMIC(CInvalidArgException, CException)
IMPLEMENT_DYNAMIC(CUserException, CException)

namespace {

constexpr UINT kNoMessageAvailable = 0xF020;

}  // namespace

namespace qv {

BOOL CopyMessage(std::string_view message, char* text, UINT maximum) {
    if (maximum == 0) return !message.empty();
    const std::size_t length = std::min<std::size_t>(message.size(), maximum - 1);
    std::memcpy(text, message.data(), length);
    text[length] = 0;
    return !message.empty();
}

}  // namespace qv

void CException::Delete() {
    if (m_autoDelete) delete this;
}

BOOL CException::GetErrorMessage(char* text, UINT maximum, UINT*) {
    return qv::CopyMessage({}, text, maximum);
}

int CException::ReportError(UINT type, UINT fallbackId) {
    char text[512];
    if (GetErrorMessage(text, sizeof text)) return AfxMessageBox(text, type);
    return AfxMessageBox(fallbackId ? fallbackId : kNoMessageAvailable, type);
}

BOOL CInvalidArgException::GetErrorMessage(char* text, UINT maximum, UINT*) {
    return qv::CopyMessage("An argument was outside what the operation accepts.", text, maximum);
}

void AfxThrowInvalidArgException() {
    throw new CInvalidArgException;
}

void AfxThrowUserException() {
    throw new CUserException;
}
