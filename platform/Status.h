#pragma once

/// @file The result of an operation that may fail: a value, never an exception. The framework converts it to one.

#include <cstdint>
#include <utility>

namespace qv::platform {

/// Why an operation failed: the framework's causes, with its numbers.
enum class FileCause {
    None,
    Generic,
    FileNotFound,
    BadPath,
    TooManyOpenFiles,
    AccessDenied,
    InvalidFile,
    RemoveCurrentDir,
    DirectoryFull,
    BadSeek,
    HardIO,
    SharingViolation,
    LockViolation,
    DiskFull,
    EndOfFile
};

/// Returns the cause for a system error number; Generic for unknown numbers, None for 0.
FileCause CauseOf(unsigned long error);

/// Returns whether the error of a lock means that the file system does not support locks, or has run out of them.
bool MeansNoLocks(unsigned long error);
/// Returns whether an error means that the name already exists.
bool MeansNameTaken(unsigned long error);

/// Success, or a failure with its cause and the system's error number (0 if the system gave none).
class [[nodiscard]] Status {
public:
    /// Success.
    constexpr Status() = default;
    /// A failure, or a success for the cause None.
    constexpr Status(FileCause cause, unsigned long error)
        : m_cause(cause), m_error(static_cast<std::uint32_t>(error)) {}

    /// Returns the failure for a system error number. Never a success: 0 gives Generic.
    static Status OfError(unsigned long error) { return {error ? CauseOf(error) : FileCause::Generic, error}; }
    /// Does the same for an operation on a path: distinguishes a missing folder (BadPath) from a missing file
    /// (FileNotFound) on every system.
    static Status OfErrorAt(unsigned long error, const char* path);

    constexpr bool ok() const { return m_cause == FileCause::None; }
    constexpr FileCause cause() const { return m_cause; }
    constexpr unsigned long error() const { return m_error; }

    /// Ignores a failure intentionally. The call says why.
    void IgnoreError() const {}

    /// Returns this failure, or `next` if this is a success: the first failure of several steps that all run.
    constexpr Status Or(const Status& next) const { return ok() ? next : *this; }

private:
    FileCause m_cause = FileCause::None;
    std::uint32_t m_error = 0;  // large enough on all systems; a status and most results are returned in registers
};

/// The result of a system call: its value, or its error number, which was read right after the call.
template <class Value>
class [[nodiscard]] Result {
public:
    constexpr Result(Value value) : m_value(std::move(value)) {}
    static constexpr Result OfError(Value value, unsigned long error) {
        Result result(std::move(value));
        result.m_ok = false;
        result.m_error = static_cast<std::uint32_t>(error);
        return result;
    }

    constexpr bool ok() const { return m_ok; }
    /// The system's return value; after a failure the value that indicates it.
    constexpr const Value& value() const { return m_value; }
    constexpr unsigned long error() const { return m_error; }

    Status status() const { return m_ok ? Status() : Status::OfError(m_error); }
    Status statusAt(const char* path) const { return m_ok ? Status() : Status::OfErrorAt(m_error, path); }
    /// Ignores a failure intentionally. The call says why.
    void IgnoreError() const {}

private:
    Value m_value;
    std::uint32_t m_error = 0;
    bool m_ok = true;
};

}  // namespace qv::platform
