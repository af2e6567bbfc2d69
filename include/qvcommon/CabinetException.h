#pragma once

/// @file The error of the cabinet classes.

#include "qvcommon/Exceptions.h"

/// Details of a failed cabinet operation. What is unknown or does not apply is empty or 0. Paths are in the library's
/// form.
struct QvCabinetFailure {
    CString archive = {};           ///< the cabinet's path
    CString member = {};            ///< a file to be packed, a member's target, or a member
    CString method = {};            ///< name of an unsupported compression
    int otherMembers = 0;           ///< left out for the same reason
    unsigned long systemError = 0;  ///< why a file could not be used
};

/// A failure of the cabinet engine: severity 16, the engine's number and text, and details.
class QVCOMMON_API CCabinetException : public CVorbexException, public IErrorDetails {
public:
    /// Severity 16, the code shown.
    CCabinetException(int code, const char* text, const QvCabinetFailure& failure);
    ~CCabinetException() override;

    /// Returns the details of the failure.
    const QvCabinetFailure& GetFailure() const { return m_failure; }
    /// Returns all details in one line, paths in the system's form: "photos.cab: a.txt: Failure writing to target file:
    /// No space left on device". What is unknown is left out.
    CString Describe() const override;

private:
    QvCabinetFailure m_failure;
};
