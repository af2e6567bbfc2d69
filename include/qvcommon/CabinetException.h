#pragma once

/// @file The error of the cabinet classes.

#include "qvcommon/Exceptions.h"

/// What a failure of a cabinet operation was about. What is not known, or has nothing to do with it, is empty or 0. Paths
/// are in the library's form.
struct QvCabinetFailure {
    CString archive = {};           ///< the cabinet's path
    CString member = {};            ///< a file to be packed, a member's target, or a member
    CString method = {};            ///< the name of a compression that this library does not read
    int otherMembers = 0;           ///< that were left out for the same reason
    unsigned long systemError = 0;  ///< why a file could not be used
};

/// A failure of the cabinet engine: severity 16, the engine's number and its text, and what it was about.
class QVCOMMON_API CCabinetException : public CVorbexException {
public:
    /// Severity 16, the code shown.
    CCabinetException(int code, const char* text, const QvCabinetFailure& failure);
    ~CCabinetException() override;

    /// What the failure was about.
    const QvCabinetFailure& GetFailure() const { return m_failure; }
    /// All of it in one line, paths in the system's form: "photos.cab: a.txt: Failure writing to target file: No space left
    /// on device". What is not known is left out.
    CString Describe() const;

private:
    QvCabinetFailure m_failure;
};
