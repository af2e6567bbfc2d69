#pragma once

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "cabinet/Format.h"
#include "tests/support/CabinetOf.h"

/// @file A small LZX encoder: no program at hand makes such cabinets.

namespace qv::test {

enum class LzxBlock : unsigned { Verbatim = 1, Aligned = 2, Uncompressed = 3 };

struct LzxRecipe {
    unsigned windowBits = 15;
    std::vector<std::pair<LzxBlock, std::size_t>> blocks = {{LzxBlock::Verbatim, 1 << 20}};  ///< repeated in turn
    std::uint32_t translationSize = 0;  ///< other than 0: calls are translated
};

class LzxMaker {
public:
    /// The frames of a folder. `data` has no translation yet.
    static std::vector<std::string> Frames(std::string data, const LzxRecipe& recipe) {
        LzxMaker maker(std::move(data), recipe);
        maker.Encode();
        return std::move(maker.m_frames);
    }

private:
    static constexpr std::size_t kFrame = cabinet::kBlockSize, kLongest = 257;
    using Lengths = std::vector<unsigned>;
    struct Token {
        std::uint32_t offset;  ///< 0: a literal
        unsigned length, slot, extra, footer;
        unsigned char literal;
    };

    LzxMaker(std::string data, const LzxRecipe& recipe)
        : m_recipe(recipe), m_data(std::move(data)), m_last(1 << 16, -1), m_lengths(249) {
        constexpr unsigned kSlots[] = {30, 32, 34, 36, 38, 42, 50};
        m_main.resize(256 + 8 * kSlots[recipe.windowBits - 15]);
    }

    void Encode() {
        m_frames.emplace_back();
        Bits(m_recipe.translationSize ? 1 : 0, 1);
        if (m_recipe.translationSize) {
            Bits(m_recipe.translationSize >> 16, 16);
            Bits(m_recipe.translationSize & 0xFFFF, 16);
            for (std::size_t at = 0; at < m_data.size(); at += kFrame) Translate(at);
        }
        for (std::size_t block = 0, at = 0; at < m_data.size(); ++block) {
            const auto& [type, most] = m_recipe.blocks[block % m_recipe.blocks.size()];
            const std::size_t size = std::min(most, m_data.size() - at);
            Bits(static_cast<unsigned>(type), 3);
            Bits(static_cast<unsigned>(size >> 16), 8);
            Bits(static_cast<unsigned>(size & 0xFFFF), 16);
            if (type == LzxBlock::Uncompressed)
                PutBytes(at, size);
            else
                PutTokens(at, size, type == LzxBlock::Aligned);
            at += size;
        }
        Align();
    }

    void Translate(std::size_t start) {
        const std::size_t size = std::min(kFrame, m_data.size() - start);
        auto* const frame = reinterpret_cast<unsigned char*>(m_data.data() + start);
        for (std::size_t i = 0; i + 10 < size; ++i) {
            if (frame[i] != 0xE8) continue;
            const auto place = static_cast<std::int64_t>(start + i);
            const std::int64_t to = static_cast<std::int32_t>(cabinet::Get32(frame + i + 1)),
                               limit = m_recipe.translationSize;
            if (to >= -place && to < limit - place)
                cabinet::Put32(frame + i + 1, static_cast<std::uint32_t>(to + place));
            else if (to >= limit - place && to < limit)
                cabinet::Put32(frame + i + 1, static_cast<std::uint32_t>(to - limit));
            i += 4;
        }
    }

    void Bits(unsigned value, unsigned count) {
        while (count-- > 0) {
            m_word = m_word << 1 | (value >> count & 1);
            if (++m_filled < 16) continue;
            m_frames.back() += {static_cast<char>(m_word), static_cast<char>(m_word >> 8)};
            m_word = m_filled = 0;
        }
    }
    void Align() {
        while (m_filled) Bits(0, 1);
    }
    void Advance(std::size_t& at, std::size_t count, bool isBits) {
        at += count;
        if (at % kFrame || at == m_data.size()) return;
        if (isBits) Align();
        m_frames.emplace_back();
    }

    void PutBytes(std::size_t at, std::size_t size) {
        Bits(0, 16 - m_filled);
        for (const std::uint32_t offset : m_offsets)
            for (int shift = 0; shift < 32; shift += 8) m_frames.back() += static_cast<char>(offset >> shift);
        for (const std::size_t end = at + size; at < end;) {
            const std::size_t count = std::min(end - at, kFrame - at % kFrame);
            m_frames.back().append(m_data, at, count);
            if (at + count == end && size % 2) m_frames.back() += '\0';
            Advance(at, count, false);
        }
    }

    void PutTokens(std::size_t at, std::size_t size, bool aligned) {
        std::vector<Token> tokens;
        for (std::size_t next = at; next < at + size; next += tokens.back().length)
            tokens.push_back(NextToken(next, std::min(at + size, (next / kFrame + 1) * kFrame)));
        std::vector<unsigned> main(m_main.size()), lengths(m_lengths.size()), low(8);
        for (const Token& token : tokens) {
            ++main[MainSymbol(token)];
            if (token.offset && token.length >= 9) ++lengths[token.length - 9];
            if (token.offset && token.extra >= 3) ++low[token.footer & 7];
        }
        if (std::ranges::max(low) == 0) low = {1, 1};  // readers expect a code, used or not
        low.resize(8);
        const Lengths lowLengths = CodeLengths(low, 7);
        if (aligned)
            for (const unsigned length : lowLengths) Bits(length, 3);
        const Lengths mainLengths = CodeLengths(main, 16), lengthLengths = CodeLengths(lengths, 16);
        PutLengths(m_main, mainLengths, 0, 256);
        PutLengths(m_main, mainLengths, 256, main.size());
        PutLengths(m_lengths, lengthLengths, 0, lengths.size());
        const Lengths mainCodes = Codes(mainLengths), lengthCodes = Codes(lengthLengths), lowCodes = Codes(lowLengths);
        for (const Token& token : tokens) {
            const unsigned symbol = MainSymbol(token);
            Bits(mainCodes[symbol], mainLengths[symbol]);
            if (token.offset && token.length >= 9) Bits(lengthCodes[token.length - 9], lengthLengths[token.length - 9]);
            if (token.offset && aligned && token.extra >= 3) {
                Bits(token.footer >> 3, token.extra - 3);
                Bits(lowCodes[token.footer & 7], lowLengths[token.footer & 7]);
            } else if (token.offset) {
                Bits(token.footer, token.extra);
            }
            Advance(at, token.length, true);
        }
    }

    static unsigned MainSymbol(const Token& token) {
        if (!token.offset) return token.literal;
        return 256 + 8 * token.slot + std::min(token.length - 2, 7u);
    }

    std::size_t MatchAt(std::size_t at, std::size_t end, std::uint32_t offset) const {
        std::size_t length = 0;
        if (offset > at) return 0;
        while (at + length < end && length < kLongest && m_data[at + length] == m_data[at + length - offset]) ++length;
        return length;
    }

    /// What the last place with the same three bytes gives, or one of the last offsets.
    Token NextToken(std::size_t at, std::size_t end) {
        Token token = {0, 1, 0, 0, 0, static_cast<unsigned char>(m_data[at])};
        std::size_t best = 1;
        for (unsigned i = 0; i < 3; ++i) {
            const std::size_t length = MatchAt(at, end, m_offsets[i]);
            if (length <= best) continue;
            best = length;
            token.slot = i;
            token.offset = m_offsets[i];
        }
        if (at + 3 <= m_data.size()) {
            std::uint32_t bytes = 0;
            std::memcpy(&bytes, m_data.data() + at, 3);
            std::int64_t& last = m_last[bytes * 0x9E3779B1u >> 16];
            const std::int64_t offset = std::int64_t(at) - last;
            const bool inWindow = last >= 0 && offset <= (std::int64_t{1} << m_recipe.windowBits) - 3;
            const std::size_t length = inWindow ? MatchAt(at, end, static_cast<std::uint32_t>(offset)) : 0;
            last = static_cast<std::int64_t>(at);
            if (length > best + 1) {
                best = length;
                token.offset = static_cast<std::uint32_t>(offset);
                token.slot = 3;
            }
        }
        if (!token.offset) return token;
        token.length = static_cast<unsigned>(best);
        if (token.slot < 3) {
            std::swap(m_offsets[0], m_offsets[token.slot]);
            return token;
        }
        m_offsets = {token.offset, m_offsets[0], m_offsets[1]};
        std::uint32_t base = 3;  // of slot 3, with the 2 that are added
        for (;; ++token.slot) {
            token.extra = token.slot < 4 ? 0 : token.slot < 36 ? token.slot / 2 - 1 : 17;
            if (token.offset + 2 < base + (1u << token.extra)) break;
            base += 1u << token.extra;
        }
        token.footer = token.offset + 2 - base;
        return token;
    }

    /// Those of a Huffman code, of two symbols at least where there is one; rounder counts make it short enough.
    static Lengths CodeLengths(std::vector<unsigned> counts, unsigned longest) {
        const std::size_t used = counts.size() - static_cast<std::size_t>(std::ranges::count(counts, 0u));
        if (used == 0) return Lengths(counts.size());
        if (used == 1) (counts[0] ? counts[1] : counts[0]) = 1;
        for (;;) {
            Lengths lengths(counts.size());
            std::vector<std::pair<unsigned, std::vector<std::size_t>>> trees;
            for (std::size_t i = 0; i < counts.size(); ++i)
                if (counts[i]) trees.push_back({counts[i], {i}});
            while (trees.size() > 1) {
                std::ranges::partial_sort(trees, trees.begin() + 2);
                for (int i = 0; i < 2; ++i)
                    for (const std::size_t symbol : trees[static_cast<std::size_t>(i)].second) ++lengths[symbol];
                trees[1].first += trees[0].first;
                trees[1].second.insert(trees[1].second.end(), trees[0].second.begin(), trees[0].second.end());
                trees.erase(trees.begin());
            }
            if (std::ranges::max(lengths) <= longest) return lengths;
            for (unsigned& count : counts) count = (count + 1) / 2;
        }
    }

    static Lengths Codes(const Lengths& lengths) {
        Lengths codes(lengths.size());
        for (unsigned length = 1, code = 0; length <= 16; ++length, code <<= 1)
            for (std::size_t i = 0; i < lengths.size(); ++i)
                if (lengths[i] == length) codes[i] = code++;
        return codes;
    }

    /// Runs and differences from the block before.
    void PutLengths(Lengths& before, const Lengths& lengths, std::size_t from, std::size_t end) {
        struct Symbol {
            unsigned symbol, value = 0, bits = 0, then = 0;
        };
        std::vector<Symbol> symbols;
        for (std::size_t i = from; i < end;) {
            std::size_t run = 1;
            while (i + run < end && lengths[i + run] == lengths[i]) ++run;
            const unsigned difference = (before[i] + 17 - lengths[i]) % 17;
            if (lengths[i] == 0 && run >= 20) {
                run = std::min<std::size_t>(run, 51);
                symbols.push_back({18, static_cast<unsigned>(run - 20), 5});
            } else if (lengths[i] == 0 && run >= 4) {
                symbols.push_back({17, static_cast<unsigned>(run - 4), 4});
            } else if (run >= 4) {
                run = std::min<std::size_t>(run, 5);
                symbols.push_back({19, static_cast<unsigned>(run - 4), 1, difference});
            } else {
                run = 1;
                symbols.push_back({difference});
            }
            std::copy_n(lengths.begin() + static_cast<std::ptrdiff_t>(i), run,
                        before.begin() + static_cast<std::ptrdiff_t>(i));
            i += run;
        }
        std::vector<unsigned> counts(20);
        for (const Symbol& symbol : symbols) {
            ++counts[symbol.symbol];
            if (symbol.symbol == 19) ++counts[symbol.then];
        }
        const Lengths pretree = CodeLengths(counts, 15), codes = Codes(pretree);
        for (const unsigned length : pretree) Bits(length, 4);
        for (const Symbol& symbol : symbols) {
            Bits(codes[symbol.symbol], pretree[symbol.symbol]);
            Bits(symbol.value, symbol.bits);
            if (symbol.symbol == 19) Bits(codes[symbol.then], pretree[symbol.then]);
        }
    }

    const LzxRecipe& m_recipe;
    std::string m_data;
    std::vector<std::string> m_frames;
    unsigned m_word = 0, m_filled = 0;
    std::vector<std::int64_t> m_last;  ///< places by three bytes
    std::array<std::uint32_t, 3> m_offsets = {1, 1, 1};
    Lengths m_main, m_lengths;  ///< of the block before
};

/// A cabinet with these members.
inline std::string LzxCabinet(const std::vector<std::pair<std::string, std::string>>& members,
                              const LzxRecipe& recipe) {
    std::string data;
    std::vector<std::pair<std::string, std::size_t>> sizes;
    for (const auto& [name, content] : members) {
        data += content;
        sizes.push_back({name, content.size()});
    }
    return CabinetOf({{cabinet::kLzx | recipe.windowBits << 8, LzxMaker::Frames(data, recipe), sizes}});
}

}  // namespace qv::test
