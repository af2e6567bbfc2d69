#include <cstring>
#include <limits>

#include "platform/Text.h"

namespace qv::platform {
namespace {

// The C functions stop at a zero byte; texts that contain zero bytes are split at them.
struct Pieces {
    explicit Pieces(std::string_view text) : m_rest(text) {}

    bool AtEnd() const { return m_atEnd; }

    std::string Next() {
        const std::size_t zero = m_rest.find('\0');
        std::string piece(m_rest.substr(0, zero));
        m_atEnd = zero == m_rest.npos;
        if (!m_atEnd) m_rest.remove_prefix(zero + 1);
        return piece;
    }

private:
    std::string_view m_rest;
    bool m_atEnd = false;
};

bool HasZero(std::string_view text) {
    return text.find('\0') != text.npos;
}

// What the C library of Windows returns for bytes that are no characters: of both orders, and as the size of a key.
constexpr int kFailed = std::numeric_limits<int>::max();

// A text that is a prefix of the other one is first.
int CollatePieces(std::string_view a, std::string_view b) {
    Pieces left(a), right(b);
    for (;;) {
        const int order = CollateStrings(left.Next().c_str(), right.Next().c_str());
        if (order != 0) return order;
        if (left.AtEnd() || right.AtEnd()) return right.AtEnd() - left.AtEnd();
    }
}

void AppendPieceKey(const std::string& piece, std::string& key) {
    const std::size_t start = key.size(), guess = 4 * piece.size() + 16;
    key.resize(start + guess);
    const std::size_t needed = std::strxfrm(key.data() + start, piece.c_str(), guess);
    if (needed >= static_cast<std::size_t>(kFailed)) {
        key.replace(start, key.npos, piece);
        return;
    }
    key.resize(start + needed + 1);
    if (needed >= guess) std::strxfrm(key.data() + start, piece.c_str(), needed + 1);
    key.pop_back();
}

}  // namespace

int CollateStrings(const char* a, const char* b) {
    const int order = std::strcoll(a, b);
    return order == kFailed && std::strcoll(b, a) == kFailed ? std::strcmp(a, b) : order;
}

int Collate(std::string_view a, std::string_view b) {
    if (!CollatesInCodePage()) return CollatePieces(ForCollation(a), ForCollation(b));
    if (HasZero(a) || HasZero(b)) return CollatePieces(a, b);
    return CollateStrings(std::string(a).c_str(), std::string(b).c_str());
}

std::size_t AppendCollationKey(std::string_view text, std::string& key) {
    const std::size_t before = key.size();
    const bool asItIs = CollatesInCodePage();
    const std::string converted = asItIs ? std::string() : ForCollation(text);
    Pieces pieces(asItIs ? text : converted);
    AppendPieceKey(pieces.Next(), key);
    while (!pieces.AtEnd()) {
        key += '\0';
        AppendPieceKey(pieces.Next(), key);
    }
    return key.size() - before;
}

}  // namespace qv::platform
