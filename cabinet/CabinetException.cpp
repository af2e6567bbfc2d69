#include "qvcommon/CabinetException.h"

#include "cabinet/Errors.h"
#include "platform/Error.h"
#include "qvcommon/FileUtils.h"

using namespace qv::cabinet;
using qv::platform::ErrorMessage;

namespace {

constexpr int kSeverity = 16;

}  // namespace

CCabinetException::CCabinetException(int code, const char* text, const QvCabinetFailure& failure)
    : CVorbexException(code, kSeverity, text), m_failure(failure) {}

CCabinetException::~CCabinetException() = default;

CString CCabinetException::Describe() const {
    CString line, others, cause;
    if (m_failure.systemError) cause = CString(ErrorMessage(m_failure.systemError));
    cause.TrimRight();
    for (const CString& path : {m_failure.archive, m_failure.member})
        if (!path.IsEmpty()) line += CFileUtils::GetNativePath(path) + ": ";
    // The engine reports a member's file that cannot be created as an abort by the user; the cause is more useful.
    if (GetCode() == NumberOf(ReadError::Aborted) && !cause.IsEmpty()) return line + cause;
    line += const_cast<CCabinetException*>(this)->GetText();
    if (!m_failure.method.IsEmpty()) line += " (" + m_failure.method + ")";
    if (m_failure.otherMembers > 0) others.Format("; %d other members as well", m_failure.otherMembers);
    line += others;
    return cause.IsEmpty() ? line : line + ": " + cause;
}
