#pragma once

/// @file Rule-based escaping of texts.

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core/ByteScan.h"
#include "platform/Ascii.h"
#include "platform/Text.h"

namespace qv::html {

inline constexpr char kNoBreakSpace = '\xA0';
inline constexpr std::string_view kNoBreakSpaceUtf8 = "\xC2\xA0";

/// Finds character boundaries, in one pass over the text.
class Characters {
public:
    explicit Characters(std::string_view text) : m_text(text), m_page(platform::CurrentCodePage()) {}

    bool AreUtf8() const { return m_page == platform::CodePage::Utf8; }

    // Returns the character that contains the byte at `position`. Positions must not decrease from call to call.
    std::string_view At(std::size_t position) {
        if (m_page == platform::CodePage::SingleByte) return m_text.substr(position, 1);
        // UTF-8 is self-synchronizing, and a character has at most four bytes.
        if (m_page == platform::CodePage::Utf8 && position > m_next + 3) m_next = position - 3;
        while (m_next <= position) {
            m_start = m_next;
            m_next += platform::CharacterLength(m_text, m_start, m_page);
        }
        return m_text.substr(m_start, m_next - m_start);
    }

private:
    std::string_view m_text;
    platform::CodePage m_page;
    std::size_t m_start = 0;
    std::size_t m_next = 0;
};

namespace internal {

// The only special bytes that can be a trail byte.
constexpr bool MayBeInsideCharacter(char c) {
    return c == kNoBreakSpace || c == '\\';
}

inline std::size_t EndOfLineFeeds(std::string_view text, std::size_t position) {
    return std::min(text.find_first_not_of('\n', position), text.size());
}

// Whether removing the line feeds at `position` may join the bytes around them into one character.
inline bool LineFeedsSplitBytes(std::string_view text, std::size_t position) {
    if (position == 0 || ascii::IsAscii(text[position - 1])) return false;
    const std::size_t end = EndOfLineFeeds(text, position);
    if (end == text.size()) return false;
    return !ascii::IsAscii(text[end]) || platform::CurrentCodePage() == platform::CodePage::DoubleByte;
}

inline std::string WithoutLineFeeds(std::string_view text) {
    std::string out(text);
    std::erase(out, '\n');
    return out;
}

// The replacement of a special byte.
struct Replacement {
    char bytes[14] = {};
    unsigned char size = 0;
    unsigned char context = 0;

    // When the neighbouring bytes matter as well: always, or after a byte with the bit kAfterOthers.
    static constexpr unsigned char kAlways = 1, kAfterOthers = 0x80;
    bool DependsOnBytesAround(char before) const {
        return context & (kAlways | (static_cast<unsigned char>(before) & kAfterOthers));
    }
};

// A lookup table avoids a branch for each byte.
template <class Rule>
class Replacements {
public:
    static const Replacement& Of(char c) { return kReplacements[kPlaces[static_cast<unsigned char>(c)]]; }
    static constexpr std::size_t kLongest = sizeof(Replacement);

private:
    static constexpr std::size_t kMost = 16;
    using Table = std::pair<std::array<unsigned char, 256>, std::array<Replacement, kMost>>;

    static constexpr Table kTable = [] {
        Table table{};
        unsigned char place = 0;
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const char c = static_cast<char>(byte);
            if (!Rule::Specials::Has(c)) continue;
            Replacement& replacement = table.second[place];
            for (const char part : Rule::Replacement(c)) replacement.bytes[replacement.size++] = part;
            if (MayBeInsideCharacter(c)) replacement.context = Replacement::kAlways;
            if (Rule::kDropsLineFeeds && c == '\n') replacement.context = Replacement::kAfterOthers;
            table.first[byte] = place++;
        }
        return table;
    }();
    static constexpr const auto& kPlaces = kTable.first;
    static constexpr const auto& kReplacements = kTable.second;
};

}  // namespace internal

/// Escapes a text by a rule, which defines
/// - `Specials`, a set of bytes, and `Replacement`, the replacement of each, at most 14 bytes; 0xA0 means the
/// non-breaking space, which is two bytes in UTF-8, and a backslash must be a whole character;
/// - `kDropsLineFeeds`, whether bytes that become adjacent when line feeds are removed may form a character.
///
/// Works piece by piece into a buffer with room for the longest result of a piece. So the loop over the specials is
/// short, and searched bytes are still in the cache when they are copied.
template <class Rule>
class Escaper {
public:
    explicit Escaper(std::string_view text) : m_text(text) {}

    std::string Escape() {
        m_out.reserve(m_text.size());
        while (m_begin < m_text.size()) {
            std::size_t size = PlainSize();
            if (size > 0) {
                m_out.append(m_text.substr(m_begin, size));
            } else {
                size = Whole(std::min(m_text.size() - m_begin, kPiece));
                AppendPiece(m_text.substr(m_begin, size));
            }
            if (m_linesSplitBytes) return Escaper(internal::WithoutLineFeeds(m_text)).Escape();
            m_begin += size;
        }
        return std::move(m_out);
    }

private:
    static constexpr std::size_t kPiece = 1024;

    // Returns the length of the text before the next special; 0 if that is less than a piece.
    std::size_t PlainSize() const {
        constexpr std::size_t most = 64;
        const std::size_t blocks = std::min((m_text.size() - m_begin) / kMarksBlock, most);
        const std::size_t plain = Rule::Specials::CountPlain(m_text.data() + m_begin, blocks) * kMarksBlock;
        return plain < kPiece ? 0 : Whole(plain);
    }

    // Excludes a last byte that may begin a non-breaking space, unless the text ends there.
    std::size_t Whole(std::size_t size) const {
        const bool ends = m_begin + size == m_text.size();
        return ends || m_text[m_begin + size - 1] != kNoBreakSpaceUtf8[0] ? size : size - 1;
    }

    void AppendPiece(std::string_view piece) {
        if (m_begin > 0 && m_begin + piece.size() + kStep <= m_text.size()) return AppendReadable(piece);
        char copy[1 + kPiece + kStep];
        copy[0] = m_begin > 0 ? m_text[m_begin - 1] : '\0';
        std::memcpy(copy + 1, piece.data(), piece.size());
        AppendReadable({copy + 1, piece.size()});
    }

    // The byte before the piece, and kStep bytes after it, must be readable.
    void AppendReadable(std::string_view piece) {
        char written[kPiece * internal::Replacements<Rule>::kLongest + kStep];
        char* at = written;
        const char *const begin = piece.data(), *from = begin;
        ForEachByte(typename Rule::Specials(), piece, [&at, &from, begin, this](std::size_t place) {
            const char* const hit = begin + place;
            const internal::Replacement& replacement = internal::Replacements<Rule>::Of(*hit);
            const char* stop = hit;
            if (replacement.DependsOnBytesAround(hit[-1])) [[unlikely]] {
                stop = LookAround(hit, place);
                if (!stop) return;
            }
            at = Copy(at, from, stop);
            std::memcpy(at, &replacement, sizeof(replacement));  // only `size` bytes of it count
            at += replacement.size;
            from = hit + 1;
        });
        if (from == begin) return void(m_out.append(piece));
        if (m_out.capacity() < Enough()) m_out.reserve(Enough());
        at = Copy(at, from, begin + piece.size());
        m_out.append(written, static_cast<std::size_t>(at - written));
    }

    // Copies in steps of constant size, past the end.
    static char* Copy(char* to, const char* from, const char* end) {
        std::memcpy(to, from, kStep);
        const std::ptrdiff_t size = end - from;
        for (std::ptrdiff_t done = kStep; done < size; done += kStep) std::memcpy(to + done, from + done, kStep);
        return to + size;
    }

    static constexpr std::ptrdiff_t kStep = 32;

    // For a text with some specials; grows further if there are many.
    std::size_t Enough() const { return m_text.size() + m_text.size() / 8 + 16; }

    // Returns the start of what is replaced: one byte earlier for a non-breaking space of two bytes. Null inside a
    // longer character.
    const char* LookAround(const char* hit, std::size_t place) {
        const std::size_t position = m_begin + place;
        if (*hit == '\n') {
            m_linesSplitBytes = m_linesSplitBytes || internal::LineFeedsSplitBytes(m_text, position);
            return hit;
        }
        if (!m_characters) m_characters.emplace(m_text);
        const std::string_view character = m_characters->At(position);
        // In some double-byte pages the two bytes are a letter.
        if (*hit == kNoBreakSpace && m_characters->AreUtf8() && character == kNoBreakSpaceUtf8) return hit - 1;
        return character.size() > 1 ? nullptr : hit;
    }

    std::string_view m_text;
    std::string m_out;
    std::size_t m_begin = 0;  // of the piece
    std::optional<Characters> m_characters;
    bool m_linesSplitBytes = false;  // then line feeds must be removed before anything else is done
};

}  // namespace qv::html
