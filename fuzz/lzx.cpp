// The first byte selects the window and the kind of the rest: frames, each preceded by its size, which must be
// processed or refused; or data, which must survive encoding and decoding.

#include <cstring>

#include "cabinet/Lzx.h"
#include "fuzz/FuzzInput.h"
#include "fuzz/LzxMaker.h"

namespace {

using namespace qv::cabinet;

class Heap : public IMemory {
public:
    void* Allocate(std::size_t size) override { return std::malloc(size); }
    void Free(void* memory) override { std::free(memory); }
};

Bytes BytesOf(std::string_view text) {
    return {reinterpret_cast<const unsigned char*>(text.data()), text.size()};
}

void DecodeAny(LzxDecompressor& lzx, std::string_view text) {
    std::vector<unsigned char> out(kBlockSize);
    while (text.size() >= 2) {
        const std::size_t size = Get16(BytesOf(text).data());
        text.remove_prefix(2);
        const std::string_view frame = text.substr(0, size);
        text.remove_prefix(frame.size());
        // An exact heap allocation, so that reads beyond it are detected.
        const std::vector<unsigned char> exact(frame.begin(), frame.end());
        if (!lzx.Decompress(exact, text.empty() ? std::span(out).first(1 + size % kBlockSize) : std::span(out))) return;
    }
}

void EncodeAndDecode(LzxDecompressor& lzx, unsigned kinds, std::string_view text) {
    using qv::test::LzxBlock;
    // Repeated, so that short inputs reach frame boundaries.
    std::string data;
    for (std::size_t times = text.empty() ? 0 : 1 + 40000 / (text.size() + 4000); times > 0; --times) data += text;
    if (data.empty()) return;
    const auto kind = [&](unsigned shift) { return static_cast<LzxBlock>(1 + (kinds >> shift) % 3); };
    const auto frames = qv::test::LzxMaker::Frames(
        data, {lzx.WindowBits(), {{kind(0), 1000 + kinds * 100}, {kind(2), 20001}}, kinds % 2 ? 5000u : 0u});
    std::string again;
    for (const std::string& frame : frames) {
        std::vector<unsigned char> out(std::min(kBlockSize, data.size() - again.size()));
        Require(lzx.Decompress(BytesOf(frame), out), "what is encoded is decoded");
        again.append(out.begin(), out.end());
    }
    Require(again == data, "to what it was");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    Heap heap;
    LzxDecompressor lzx(heap, kSmallestLzxWindow + data[0] % 7);
    const std::string_view text(reinterpret_cast<const char*>(data) + 2, size - 2);
    data[0] & 0x80 ? EncodeAndDecode(lzx, data[1], text) : DecodeAny(lzx, text);
    return 0;
}
