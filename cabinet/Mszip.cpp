#include "cabinet/Mszip.h"

#include <cstring>

namespace qv::cabinet {
namespace {

constexpr std::size_t kSignatureSize = 2, kStoredHead = 5;
constexpr int kRawDeflate = -15;

void* Allocate(void* memory, unsigned items, unsigned size) {
    return static_cast<IMemory*>(memory)->Allocate(std::size_t{items} * size);
}

void Free(void* memory, void* block) {
    static_cast<IMemory*>(memory)->Free(block);
}

void UseMemory(z_stream& stream, IMemory& memory) {
    stream.zalloc = &Allocate;
    stream.zfree = &Free;
    stream.opaque = &memory;
}

Bytef* Writable(Bytes bytes) {
    return const_cast<Bytef*>(bytes.data());  // zlib's interface lacks the const, but does not write
}

/// Writes a deflate stream of one stored block.
std::size_t Store(Bytes block, unsigned char* out) {
    const auto size = static_cast<unsigned>(block.size());
    *out++ = 1;
    out = Put16(Put16(out, size), ~size);
    std::memcpy(out, block.data(), size);
    return kStoredHead + size;
}

}  // namespace

MszipCompressor::MszipCompressor(IMemory& memory) {
    UseMemory(m_stream, memory);
    // With the history primed, this compresses better than level 6 without, in two thirds of the time.
    constexpr int kLevel = 4, kMemory = 8;
    if (deflateInit2(&m_stream, kLevel, Z_DEFLATED, kRawDeflate, kMemory, Z_DEFAULT_STRATEGY) != Z_OK)
        throw EngineFailure{WriteError::NoMemory};
}

MszipCompressor::~MszipCompressor() {
    deflateEnd(&m_stream);
}

std::size_t MszipCompressor::Compress(Bytes history, Bytes block, unsigned char* out) {
    if (deflateReset(&m_stream) != Z_OK) return 0;
    if (!history.empty() &&
        deflateSetDictionary(&m_stream, history.data(), static_cast<unsigned>(history.size())) != Z_OK)
        return 0;
    std::memcpy(out, "CK", kSignatureSize);
    const std::size_t stored = kStoredHead + block.size();
    m_stream.next_in = Writable(block);
    m_stream.avail_in = static_cast<unsigned>(block.size());
    m_stream.next_out = out + kSignatureSize;
    m_stream.avail_out = static_cast<unsigned>(stored - 1);  // longer than stored is never better
    const int result = deflate(&m_stream, Z_FINISH);
    if (result == Z_STREAM_END) return kSignatureSize + m_stream.total_out;
    return result == Z_OK || result == Z_BUF_ERROR ? kSignatureSize + Store(block, out + kSignatureSize) : 0;
}

MszipDecompressor::MszipDecompressor(IMemory& memory) {
    UseMemory(m_stream, memory);
    if (inflateInit2(&m_stream, kRawDeflate) != Z_OK) throw EngineFailure{ReadError::NoMemory};
    // Makes zlib allocate its window now.
    constexpr unsigned char kAny = 0;
    if (inflateSetDictionary(&m_stream, &kAny, 1) == Z_OK) return;
    inflateEnd(&m_stream);
    throw EngineFailure{ReadError::NoMemory};
}

MszipDecompressor::~MszipDecompressor() {
    inflateEnd(&m_stream);
}

bool MszipDecompressor::Decompress(Bytes history, Bytes block, std::span<unsigned char> out) {
    if (block.size() < kSignatureSize || std::memcmp(block.data(), "CK", kSignatureSize) != 0) return false;
    if (inflateReset(&m_stream) != Z_OK) return false;
    if (!history.empty() &&
        inflateSetDictionary(&m_stream, history.data(), static_cast<unsigned>(history.size())) != Z_OK)
        return false;
    const Bytes deflated = block.subspan(kSignatureSize);
    m_stream.next_in = Writable(deflated);
    m_stream.avail_in = static_cast<unsigned>(deflated.size());
    m_stream.next_out = out.data();
    m_stream.avail_out = static_cast<unsigned>(out.size());
    return inflate(&m_stream, Z_FINISH) == Z_STREAM_END && m_stream.avail_out == 0;
}

}  // namespace qv::cabinet
