#include "qvcommon/ShellVerbHelper.h"

#include "framework/FileErrors.h"
#include "platform/Desktop.h"
#include "platform/FileStatus.h"
#include "platform/Path.h"
#include "qvcommon/Exceptions.h"

namespace {

void HandOver(qv::platform::DesktopVerb verb, const CString& document) {
    qv::platform::FileInfo info;
    qv::ThrowIfFailed(qv::platform::StatusOf(document, info), document);
    std::string problem;
    if (!qv::platform::RunDesktopVerb(verb, qv::platform::FullPath(document), problem))
        ThrowQvException(document + ": " + problem, 48, 0, 0);
}

}  // namespace

void CShellVerbHelper::Open(const char* document) {
    HandOver(qv::platform::DesktopVerb::Open, document);
}

void CShellVerbHelper::Print(const char* document) {
    HandOver(qv::platform::DesktopVerb::Print, document);
}

void CShellVerbHelper::Reveal(const char* document) {
    HandOver(qv::platform::DesktopVerb::Reveal, document);
}
