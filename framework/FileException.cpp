#include "framework/MessageText.h"
#include "platform/Error.h"
#include "platform/Path.h"
#include "platform/Status.h"
#include "qvcommon/framework/File.h"

IMPLEMENT_DYNAMIC(CFileException, CException)

namespace {

using qv::platform::FileCause;

static_assert(CFileException::none == static_cast<int>(FileCause::None));
static_assert(CFileException::generic == static_cast<int>(FileCause::Generic));
static_assert(CFileException::fileNotFound == static_cast<int>(FileCause::FileNotFound));
static_assert(CFileException::badPath == static_cast<int>(FileCause::BadPath));
static_assert(CFileException::tooManyOpenFiles == static_cast<int>(FileCause::TooManyOpenFiles));
static_assert(CFileException::accessDenied == static_cast<int>(FileCause::AccessDenied));
static_assert(CFileException::invalidFile == static_cast<int>(FileCause::InvalidFile));
static_assert(CFileException::removeCurrentDir == static_cast<int>(FileCause::RemoveCurrentDir));
static_assert(CFileException::directoryFull == static_cast<int>(FileCause::DirectoryFull));
static_assert(CFileException::badSeek == static_cast<int>(FileCause::BadSeek));
static_assert(CFileException::hardIO == static_cast<int>(FileCause::HardIO));
static_assert(CFileException::sharingViolation == static_cast<int>(FileCause::SharingViolation));
static_assert(CFileException::lockViolation == static_cast<int>(FileCause::LockViolation));
static_assert(CFileException::diskFull == static_cast<int>(FileCause::DiskFull));
static_assert(CFileException::endOfFile == static_cast<int>(FileCause::EndOfFile));

/// The message for each cause; "%s" is the file's name in the system's form.
constexpr const char* kMessages[] = {"%s: nothing went wrong.",
                                     "%s could not be used.",
                                     "%s does not exist.",
                                     "The path %s is not valid, or a folder on it is missing.",
                                     "%s could not be opened: too many files are open.",
                                     "Access to %s was refused.",
                                     "%s is not open.",
                                     "%s could not be removed: it is the current folder.",
                                     "%s could not be made: the folder is full.",
                                     "%s has no such position.",
                                     "The device failed while using %s.",
                                     "%s is in use by someone else.",
                                     "A part of %s is locked by someone else.",
                                     "The disk is full: %s could not be written.",
                                     "%s ended too early."};

const char* PatternFor(int cause, LONG osError) {
    if (cause == CFileException::invalidFile && osError > 0 &&
        qv::platform::MeansNoLocks(static_cast<unsigned long>(osError)))
        return "%s cannot be locked on its file system.";
    const bool known = cause >= 0 && cause < static_cast<int>(std::size(kMessages));
    return kMessages[known ? cause : CFileException::generic];
}

CString MessageFor(int cause, LONG osError, const CString& name) {
    CString text;
    text.Format(qv::RuntimeFormat{PatternFor(cause, osError)},
                name.IsEmpty() ? CString("A file") : CString(qv::platform::NativePath(name)));
    return text;
}

}  // namespace

// The base stores the ownership, and only its holder owns the copy.
// NOLINTNEXTLINE(bugprone-copy-constructor-init)
CFileException::CFileException(const CFileException& other)
    : CException(0), m_cause(other.m_cause), m_lOsError(other.m_lOsError), m_strFileName(other.m_strFileName) {}

CFileException& CFileException::operator=(const CFileException& other) {
    m_cause = other.m_cause;
    m_lOsError = other.m_lOsError;
    m_strFileName = other.m_strFileName;
    return *this;
}

BOOL CFileException::GetErrorMessage(char* text, UINT maximum, UINT*) {
    CString message = MessageFor(m_cause, m_lOsError, m_strFileName);
    if (m_lOsError > 0) {
        CString reason = qv::platform::ErrorMessage(static_cast<unsigned long>(m_lOsError));
        reason.TrimRight();
        if (!reason.IsEmpty()) message += " (" + reason + ")";
    }
    return qv::CopyMessage(message, text, maximum);
}

int CFileException::OsErrorToException(LONG osError) {
    return static_cast<int>(qv::platform::CauseOf(static_cast<unsigned long>(osError)));
}

void AfxThrowFileException(int cause, LONG osError, const char* fileName) {
    throw new CFileException(cause, osError, fileName);
}
