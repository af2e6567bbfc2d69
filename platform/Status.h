#pragma once

/// @file What an operation gives back that may fail: a value, never an exception. The framework turns it into one.

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

/// The cause for an error number of the system; Generic for numbers that match none, None for 0.
FileCause CauseOf(unsigned long error);

/// Whether an error number means that the file system keeps no locks, or no more of them. Never so on Windows.
bool MeansNoLocks(unsigned long error);
/// Whether an error number means that the name exists already.
bool MeansNameTaken(unsigned long error);

/// Success, or a failure with its cause and the system's error number (0 where the system gave none).
class [[nodiscard]] Status {
public:
    /// Success.
    constexpr Status() = default;
    /// A failure, unless `cause` is None.
    constexpr Status(FileCause cause, unsigned long error)
        : m_cause(cause), m_error(static_cast<std::uint32_t>(error)) {}

    /// The failure for an error number of the system. Never a success: 0 gives Generic.
    static Status OfError(unsigned long error) { return {error ? CauseOf(error) : FileCause::Generic, error}; }
    /// The same for an operation on a path: tells a missing folder (BadPath) from a missing file (FileNotFound) on every
    /// system.
    static Status OfErrorAt(unsigned long error, const char* path);

    constexpr bool ok() const { return m_cause == FileCause::None; }
    constexpr FileCause cause() const { return m_cause; }
    constexpr unsigned long error() const { return m_error; }

    /// Drops a failure on purpose. The call says why.
    void IgnoreError() const {}

    /// This failure, or `next` where this is a success: the first failure of several steps that all run.
    constexpr Status Or(const Status& next) const { return ok() ? next : *this; }

private:
    FileCause m_cause = FileCause::None;
    std::uint32_t m_error = 0;  // no system has larger ones; a status and most results travel in registers
};

/// What a call to the system gives back: its value, or its error number, which has been read right after the call.
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
    /// What the system returned; after a failure the value that says so.
    constexpr const Value& value() const { return m_value; }
    constexpr unsigned long error() const { return m_error; }

    Status status() const { return m_ok ? Status() : Status::OfError(m_error); }
    Status statusAt(const char* path) const { return m_ok ? Status() : Status::OfErrorAt(m_error, path); }
    /// Drops a failure on purpose. The call says why.
    void IgnoreError() const {}

private:
    Value m_value;
    std::uint32_t m_error = 0;
    bool m_ok = true;
};

}  // namespace qv::platform
