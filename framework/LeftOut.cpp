#include "qvcommon/framework/LeftOut.h"

#include "platform/Error.h"
#include "platform/Status.h"

namespace {

CString MessageOf(DWORD error) {
    CString message(qv::platform::ErrorMessage(error));
    message.TrimRight();
    return message.IsEmpty() ? "could not be processed" : message;
}

const char* Words(QvLeftOut::Cause cause) {
    switch (cause) {
        case QvLeftOut::vanished: return "no longer exists";
        case QvLeftOut::brokenLink: return "link that leads nowhere";
        case QvLeftOut::linkedFolder: return "link to a folder, not followed";
        case QvLeftOut::device: return "device, pipe or socket, not read";
        default: return "could not be processed";
    }
}

}  // namespace

ILeftOut::~ILeftOut() = default;

QvLeftOut QvLeftOut::OfError(const CString& path, DWORD error, bool isLink) {
    const bool gone = qv::platform::CauseOf(error) == qv::platform::FileCause::FileNotFound;
    if (gone && isLink) return OfCause(path, brokenLink);
    return {path, gone ? vanished : failed, error, MessageOf(error)};
}

QvLeftOut QvLeftOut::OfCause(const CString& path, Cause cause) {
    return {path, cause, 0, Words(cause)};
}
