#include <cstring>

#include "platform/Text.h"

namespace qv::platform {
namespace {

// The C functions stop at a zero byte; texts with embedded ones are taken piece by piece, a zero byte between the keys.
template <class Piece>
void ForEachPiece(std::string_view text, Piece piece) {
    for (;;) {
        const std::size_t zero = text.find('\0');
        piece(std::string(text.substr(0, zero)));
        if (zero == text.npos) return;
        text.remove_prefix(zero + 1);
    }
}

bool HasZero(std::string_view text) {
    return text.find('\0') != text.npos;
}

}  // namespace

int Collate(std::string_view a, std::string_view b) {
    if (!HasZero(a) && !HasZero(b)) return std::strcoll(std::string(a).c_str(), std::string(b).c_str());
    std::string keyA, keyB;
    AppendCollationKey(a, keyA);
    AppendCollationKey(b, keyB);
    return keyA.compare(keyB);
}

std::size_t AppendCollationKey(std::string_view text, std::string& key) {
    const std::size_t before = key.size();
    ForEachPiece(text, [&](const std::string& piece) {
        if (key.size() > before) key += '\0';
        const std::size_t start = key.size(), guess = 4 * piece.size() + 16;
        key.resize(start + guess);
        const std::size_t needed = std::strxfrm(key.data() + start, piece.c_str(), guess);
        key.resize(start + needed + 1);
        if (needed >= guess) std::strxfrm(key.data() + start, piece.c_str(), needed + 1);
        key.pop_back();
    });
    return key.size() - before;
}

}  // namespace qv::platform
