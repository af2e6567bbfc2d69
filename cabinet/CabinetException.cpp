#include "qvcommon/CabinetException.h"

#include "platform/Error.h"
#include "qvcommon/FileUtils.h"

namespace {

constexpr int kSeverity = 16;

}  // namespace

CCabinetException::CCabinetException(int code, const char* text, const QvCabinetFailure& failure)
    : CVorbexException(code, kSeverity, text), m_failure(failure) {}

CCabinetException::~CCabinetException() = default;

CString CCabinetException::Describe() const {
    CString line, others;
    for (const CString& path : {m_failure.archive, m_failure.member})
        if (!path.IsEmpty()) line += CFileUtils::GetNativePath(path) + ": ";
    line += const_cast<CCabinetException*>(this)->GetText();
    if (!m_failure.method.IsEmpty()) line += " (" + m_failure.method + ")";
    if (m_failure.otherMembers > 0) others.Format("; %d other members as well", m_failure.otherMembers);
    line += others;
    if (m_failure.systemError == 0) return line;
    CString cause(qv::platform::ErrorMessage(m_failure.systemError));
    cause.TrimRight();
    return line + ": " + cause;
}
