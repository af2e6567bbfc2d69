#include "cabinet/CabinetOutput.h"

#include <algorithm>

#include "cabinet/Errors.h"

namespace qv::cabinet {
namespace {

constexpr std::size_t kOutputBuffer = 64 * 1024;

}  // namespace

CabinetOutput::CabinetOutput(IMakerCallbacks& callbacks, const CString& path)
    : m_callbacks(callbacks),
      m_buffer(callbacks, kOutputBuffer, WriteError::NoMemory),
      m_file(callbacks, callbacks.CreateCabinet(path)) {
    if (!m_file) throw EngineFailure{WriteError::CabinetFile};
}

void CabinetOutput::Put(const void* data, std::size_t size) {
    for (const auto* next = static_cast<const unsigned char*>(data); size > 0;) {
        const std::span<unsigned char> room = FreeSpace();
        const std::size_t part = std::min(size, room.size());
        std::copy_n(next, part, room.data());
        Advance(part);
        next += part;
        size -= part;
    }
}

void CabinetOutput::PutText(std::string_view text) {
    Put(text.data(), text.size());
    Put("", 1);
}

void CabinetOutput::PutZeros(std::size_t count) {
    for (constexpr unsigned char kZero = 0; count > 0; --count) Put(&kZero, 1);
}

std::span<unsigned char> CabinetOutput::FreeSpace() {
    if (m_filled == kOutputBuffer) Flush();
    return {m_buffer.Get() + m_filled, kOutputBuffer - m_filled};
}

void CabinetOutput::Advance(std::size_t size) {
    m_filled += size;
    m_size += size;
}

void CabinetOutput::Commit() {
    Flush();
    if (!m_callbacks.Commit(m_file.Release())) throw EngineFailure{WriteError::CabinetFile};
}

void CabinetOutput::Flush() {
    if (m_filled > 0 && !m_callbacks.Write(m_file.Get(), m_buffer.Get(), m_filled))
        throw EngineFailure{WriteError::CabinetFile};
    m_filled = 0;
}

}  // namespace qv::cabinet
