#pragma once

/// @file The cabinet engine's errors. Each of its two halves has its own numbers, which are those of
/// QvCabinetError::error and of the exceptions of CMakeCab and CReadCab: their values must not change.

namespace qv::cabinet {

/// The texts are those of CMakeCab::GetFciErrorString.
enum class WriteError : int {
    None = 0,
    OpenFile = 1,
    ReadFile = 2,
    NoMemory = 3,
    TempFile = 4,
    UnknownCompression = 5,
    CabinetFile = 6,
    Aborted = 7,
    CannotCompress = 8
};

/// The texts are those of CReadCab::GetFdiErrorString.
enum class ReadError : int {
    None = 0,
    NotFound = 1,
    NotACabinet = 2,
    UnknownVersion = 3,
    Corrupt = 4,
    NoMemory = 5,
    UnknownCompression = 6,
    CannotDecompress = 7,
    CannotWriteTarget = 8,
    ReserveMismatch = 9,
    WrongCabinet = 10,
    Aborted = 11
};

constexpr int NumberOf(WriteError error) {
    return static_cast<int>(error);
}

constexpr int NumberOf(ReadError error) {
    return static_cast<int>(error);
}

/// Thrown by the engine's own functions; its operations convert it to an error record.
struct EngineFailure {
    constexpr EngineFailure(WriteError which) : error(NumberOf(which)) {}
    constexpr EngineFailure(ReadError which) : error(NumberOf(which)) {}

    int error;  ///< the number
};

}  // namespace qv::cabinet
