#pragma once

/// @file A cabinet file under construction.

#include <span>
#include <string_view>

#include "cabinet/Callbacks.h"

namespace qv::cabinet {

/// Buffers the output and passes it to the callbacks in large pieces. Unless the file is committed, the destructor
/// discards it. Every member may throw EngineFailure if the file cannot be written.
class CabinetOutput {
public:
    CabinetOutput(IMakerCallbacks& callbacks, const CString& path);
    CabinetOutput(const CabinetOutput&) = delete;
    CabinetOutput& operator=(const CabinetOutput&) = delete;

    void Put(const void* data, std::size_t size);
    /// Includes a terminating zero byte.
    void PutText(std::string_view text);
    void PutZeros(std::size_t count);
    /// The space for more bytes, to be reported by Advance(). Never empty.
    std::span<unsigned char> FreeSpace();
    void Advance(std::size_t size);
    /// The number of bytes so far.
    std::uint64_t Size() const { return m_size; }
    void Commit();

private:
    void Flush();

    IMakerCallbacks& m_callbacks;
    Buffer m_buffer;
    OpenedFile m_file;
    std::size_t m_filled = 0;
    std::uint64_t m_size = 0;
};

}  // namespace qv::cabinet
