#pragma once

/// @file How the cabinet engine fails. Each of its two halves has numbers of its own, which are those of
/// QvCabinetError::error and of the exceptions of CMakeCab and CReadCab: their values must not change.

namespace qv::cabinet {

/// The texts are CMakeCab::GetFciErrorString's.
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

/// The texts are CReadCab::GetFdiErrorString's.
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

/// What the engine's own functions throw; its operations turn it into an error record.
struct EngineFailure {
    constexpr EngineFailure(WriteError which) : error(NumberOf(which)) {}
    constexpr EngineFailure(ReadError which) : error(NumberOf(which)) {}

    int error;  ///< the number
};

}  // namespace qv::cabinet
