#include "cabinet/Lzx.h"

#include <algorithm>
#include <cstring>

namespace qv::cabinet {
namespace {

constexpr unsigned kShortestMatch = 2, kLongLength = 7;
constexpr unsigned kRepeatedOffsets = 3;  // slots for the last offsets
constexpr unsigned kAlignedBits = 3;      // bits of an offset with their own code in aligned blocks
constexpr int kCodesInAFill = 3;          // of up to 16 bits
constexpr std::size_t kSlots[] = {30, 32, 34, 36, 38, 42, 50};  // by the window's exponent, from 15 on

constexpr std::size_t kCopied =
    sizeof(std::uint64_t);  // bytes copied at a time: a match may write that many past its end

constexpr unsigned ExtraBits(unsigned slot) {
    return slot < 4 ? 0 : slot < 36 ? slot / 2 - 1 : 17;
}

struct Slot {
    std::uint32_t base;  ///< the first offset, minus the 2 that stored offsets are biased by
    std::uint32_t extra;
};

constexpr auto kSlotTable = [] {
    std::array<Slot, kLzxMostSlots> slots = {};
    std::uint32_t base = 0;
    for (unsigned slot = 0; slot < kLzxMostSlots; ++slot) {
        slots[slot] = {base - 2, ExtraBits(slot)};
        base += std::uint32_t{1} << slots[slot].extra;
    }
    return slots;
}();

/// The source may overlap the destination. Up to kCopied bytes past the end are overwritten.
unsigned char* CopyMatch(unsigned char* to, std::size_t length, std::size_t offset) {
    const unsigned char* from = to - offset;
    unsigned char* const end = to + length;
    if (offset >= kCopied) {
        do {
            std::memcpy(to, from, kCopied);
            to += kCopied;
            from += kCopied;
        } while (to < end);
    } else if (offset == 1) {
        std::memset(to, *from, length);
    } else {
        while (to < end) *to++ = *from++;
    }
    return end;
}

}  // namespace

LzxDecompressor::LzxDecompressor(IMemory& memory, unsigned windowBits)
    : m_windowBits(windowBits),
      m_windowSize(std::size_t{1} << windowBits),
      m_mainSymbols(kLzxLiterals + 8 * kSlots[windowBits - kSmallestLzxWindow]),
      m_window(memory, 2 * m_windowSize + kCopied, ReadError::NoMemory) {
    Reset();
}

void LzxDecompressor::Reset() {
    m_position = 0;
    m_at = 0;
    m_started = m_failed = m_isLast = m_needsPad = false;
    m_translationSize = 0;
    m_offsets.fill(1);
    m_blockLeft = 0;
    m_mainLengths.fill(0);
    m_lengthLengths.fill(0);
}

bool LzxDecompressor::Decompress(Bytes frame, std::span<unsigned char> out) {
    if (m_failed || m_isLast || out.size() > kBlockSize) return false;
    m_isLast = out.size() < kBlockSize;
    LzxBits bits(frame);
    m_failed = !DecodeFrame(bits, out.size());
    if (m_failed) return false;
    std::memcpy(out.data(), m_window.Get() + m_at - out.size(), out.size());
    RestoreCalls(out);
    return true;
}

bool LzxDecompressor::DecodeFrame(LzxBits& bits, std::size_t size) {
    if (!m_started && !ReadHead(bits)) return false;
    MakeRoom(size);
    while (size > 0) {
        if (m_blockLeft == 0 && !ReadBlockHead(bits)) return false;
        const std::size_t run = std::min<std::size_t>(size, m_blockLeft);
        if (!DecodeRun(bits, run)) return false;
        m_position += run;
        m_at += run;
        m_blockLeft -= static_cast<std::uint32_t>(run);
        size -= run;
    }
    // The byte may also come before the next frame.
    if (m_blockLeft == 0 && m_needsPad) m_needsPad = bits.TakeBytes(1).empty();
    return !bits.IsOverrun();
}

/// Keeps the data that matches may refer to.
void LzxDecompressor::MakeRoom(std::size_t size) {
    if (m_at + size <= 2 * m_windowSize) return;
    std::memmove(m_window.Get(), m_window.Get() + m_at - m_windowSize, m_windowSize);
    m_at = m_windowSize;
}

bool LzxDecompressor::ReadHead(LzxBits& bits) {
    m_started = true;
    if (bits.Read(1)) m_translationSize = bits.Read(32);
    return !bits.IsOverrun();
}

bool LzxDecompressor::ReadBlockHead(LzxBits& bits) {
    if (m_needsPad && bits.TakeBytes(1).empty()) return false;
    m_needsPad = false;
    m_type = static_cast<BlockType>(bits.Read(3));
    m_blockLeft = bits.Read(24);
    if (m_blockLeft == 0 || bits.IsOverrun()) return false;
    switch (m_type) {
        case kVerbatim:
        case kAligned: return ReadCodes(bits);
        case kUncompressed: return ReadOffsets(bits);
        default: return false;
    }
}

bool LzxDecompressor::ReadCodes(LzxBits& bits) {
    if (m_type == kAligned) {
        LzxAlignedCode::Lengths lengths;
        for (std::uint8_t& length : lengths) length = static_cast<std::uint8_t>(bits.Read(3));
        if (!m_aligned.Build(lengths)) return false;
    }
    const std::span<std::uint8_t> main = std::span(m_mainLengths).first(m_mainSymbols);
    return ReadLzxLengths(bits, main.first(kLzxLiterals)) && ReadLzxLengths(bits, main.subspan(kLzxLiterals)) &&
           m_main.Build(m_mainLengths) && ReadLzxLengths(bits, m_lengthLengths) && m_length.Build(m_lengthLengths);
}

bool LzxDecompressor::ReadOffsets(LzxBits& bits) {
    bits.SkipPadding();
    const Bytes offsets = bits.TakeBytes(sizeof m_offsets);
    if (offsets.size() < sizeof m_offsets) return false;
    for (std::size_t i = 0; i < m_offsets.size(); ++i) m_offsets[i] = Get32(offsets.data() + 4 * i);
    m_needsPad = m_blockLeft % 2 != 0;
    return true;
}

bool LzxDecompressor::DecodeRun(LzxBits& bits, std::size_t size) {
    switch (m_type) {
        case kVerbatim: return DecodeSymbols<false>(bits, size);
        case kAligned: return DecodeSymbols<true>(bits, size);
        default: return CopyBytes(bits, size);
    }
}

template <bool kIsAligned>
bool LzxDecompressor::DecodeSymbols(LzxBits& bits, std::size_t size) {
    // Local copies, which can stay in registers: a write to the window could alias any member.
    LzxBits local = bits;
    Offsets offsets = m_offsets;
    const unsigned char* const window = m_window.Get();
    const std::size_t windowSize = m_windowSize;
    unsigned char* at = m_window.Get() + m_at;
    unsigned char* const end = at + size;
    while (at < end) {
        local.Fill();
        unsigned symbol = m_main.Decode(local);
        for (int more = kCodesInAFill - 1; symbol < kLzxLiterals; --more) {
            *at++ = static_cast<unsigned char>(symbol);
            if (at == end || more == 0) break;
            symbol = m_main.Decode(local);
        }
        if (symbol < kLzxLiterals) continue;
        if (symbol == LzxMainCode::kNone) return false;
        local.Fill();
        const unsigned match = symbol - static_cast<unsigned>(kLzxLiterals);
        std::size_t length = match % 8;
        if (length == kLongLength) {
            const unsigned more = m_length.Decode(local);
            if (more == LzxLengthCode::kNone) return false;
            length += more;
        }
        length += kShortestMatch;
        const std::size_t offset = TakeOffset<kIsAligned>(local, match / 8, offsets);
        const std::size_t most = std::min(static_cast<std::size_t>(at - window), windowSize);
        if (length > static_cast<std::size_t>(end - at) || offset == 0 || offset > most) return false;
        at = CopyMatch(at, length, offset);
    }
    bits = local;
    m_offsets = offsets;
    return !bits.IsOverrun();
}

/// Returns 0 if the aligned code has no symbol.
template <bool kIsAligned>
std::uint32_t LzxDecompressor::TakeOffset(LzxBits& bits, unsigned slot, Offsets& offsets) const {
    if (slot < kRepeatedOffsets) {
        std::swap(offsets[0], offsets[slot]);
        return offsets[0];
    }
    const auto [base, extra] = kSlotTable[slot];
    std::uint32_t offset = base;
    if (kIsAligned && extra >= kAlignedBits) {
        bits.Fill();
        offset += bits.Take(extra - kAlignedBits) << kAlignedBits;
        const unsigned low = m_aligned.Decode(bits);
        if (low == LzxAlignedCode::kNone) return 0;
        offset += low;
    } else {
        offset += bits.Take(extra);
    }
    offsets = {offset, offsets[0], offsets[1]};
    return offset;
}

bool LzxDecompressor::CopyBytes(LzxBits& bits, std::size_t size) {
    const Bytes bytes = bits.TakeBytes(size);
    if (bytes.size() < size) return false;
    std::memcpy(m_window.Get() + m_at, bytes.data(), size);
    return true;
}

/// Encoders may replace the relative targets of x86 calls by absolute ones, which repeat more often.
void LzxDecompressor::RestoreCalls(std::span<unsigned char> frame) const {
    constexpr std::size_t kTail = 10;                              // bytes at a frame's end that are unchanged
    constexpr std::uint64_t kTranslated = std::uint64_t{1} << 30;  // bytes at a folder's start
    constexpr unsigned char kCall = 0xE8;
    const std::uint64_t start = m_position - frame.size();
    if (m_translationSize == 0 || frame.size() <= kTail || start >= kTranslated) return;
    unsigned char* const end = frame.data() + frame.size() - kTail;
    for (unsigned char* at = frame.data(); at < end; at += 4) {
        at = static_cast<unsigned char*>(std::memchr(at, kCall, static_cast<std::size_t>(end - at)));
        if (!at) return;
        const auto offset = static_cast<std::int64_t>(start) + (at - frame.data());
        ++at;
        const std::int64_t target = static_cast<std::int32_t>(Get32(at)), size = m_translationSize;
        if (target >= -offset && target < size)
            Put32(at, static_cast<std::uint32_t>(target >= 0 ? target - offset : target + size));
    }
}

}  // namespace qv::cabinet
