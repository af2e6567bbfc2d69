#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

/// @file Bytes of files in little-endian formats, and records of metafiles.

namespace qv::test {

inline std::string Words(const std::vector<std::uint32_t>& words) {
    return {reinterpret_cast<const char*>(words.data()), words.size() * sizeof(std::uint32_t)};
}

inline std::string Wide(std::u16string_view text) {
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
}

/// A record of a metafile; the parameters may have any length.
inline std::string Record(std::uint32_t type, const std::string& parameters) {
    return Words({type, static_cast<std::uint32_t>(8 + parameters.size())}) + parameters;
}

inline std::string HeaderRecord() {
    std::vector<std::uint32_t> words = {0, 0, 99, 49, 0, 0, 2000, 1000, 0x464D4520, 0x10000, 0, 0, 0x10002};
    words.insert(words.end(), {12, 108, 0, 1024, 768, 320, 240, 0, 0, 0, 0, 0});
    return Record(1, Words(words) + Wide(std::u16string_view(u"Maker\0Name\0\0\0", 13)));
}

inline std::string EndRecord() {
    return Record(14, Words({0, 16, 20}));
}

/// Font, text and pen records with random bytes where the format leaves bytes undefined, or with zeroes there.
inline std::string FontRecord(char16_t rubbish, std::string tail = "") {
    std::u16string names(32 + 64 + 32, rubbish);
    names.replace(0, 6, std::u16string(u"Arial\0", 6)).replace(32, 3, std::u16string(u"Ar\0", 3));
    names.replace(96, 32, 32, u'x');  // a name that fills its field
    return Record(82, std::string(32, 'f') + Wide(names) + std::string(36, 'p') + tail);
}

inline std::string TextRecord(std::u16string_view text, char16_t padding, std::uint32_t offset = 76) {
    const auto count = static_cast<std::uint32_t>(text.size());
    return Record(84, std::string(36, 't') + Words({count, offset}) + std::string(24, 'r') + Wide(text) +
                          Wide(std::u16string(1, padding)) + "dxdx");
}

inline std::string PenRecord(std::uint32_t brushStyle, std::uint32_t hatch) {
    return Record(95, std::string(28, 'p') + Words({brushStyle, 0xFF00FF, hatch, 0}));
}

inline std::string SmallMetafile(char16_t rubbish) {
    return HeaderRecord() + Record(10, Words({3, 4})) + FontRecord(rubbish) + TextRecord(u"odd", rubbish) +
           PenRecord(1, rubbish) + Record(43, Words({1, 2, 3, 4})) + EndRecord();
}

}  // namespace qv::test
