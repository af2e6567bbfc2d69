// Clears the bytes that the format leaves undefined, which hold arbitrary memory of the program that wrote the
// metafile.

#include <algorithm>

#include "qvcommon/ParseEmf.h"

void CParseEmf::ParseExtCreateFontIndirectW(EmfRecord* record) {
    struct NameField {
        DWORD offset;
        unsigned characters;
    };
    constexpr NameField faceName = {40, 32}, fullName = {104, 64}, style = {232, 32};
    for (const NameField& field : {faceName, fullName, style}) {
        if (record->size <= field.offset) break;
        // Some writers omit the later names, or end the record within one.
        const unsigned held = (record->size - field.offset) / sizeof(char16_t);
        ZeroOutUnusedStringSpaceW(reinterpret_cast<char16_t*>(record->At(field.offset)),
                                  std::min(held, field.characters));
    }
    constexpr DWORD definedSize = 332;
    if (record->size > definedSize && record->size < definedSize + sizeof(DWORD))
        std::fill(record->At(definedSize), record->At(record->size), BYTE{0});
    ParseGenericMetafileRecord(record);
}

void CParseEmf::ZeroOutUnusedStringSpaceW(char16_t* buffer, unsigned count) {
    char16_t* const end = buffer + count;
    std::fill(std::find(buffer, end, u'\0'), end, u'\0');
}

void CParseEmf::ParseExtTextOutW(EmfRecord* record) {
    constexpr std::size_t countAt = 44, offsetAt = 48, textBlockStart = 52;
    const std::uint64_t characters = record->Word(countAt), offset = record->Word(offsetAt);
    const std::uint64_t padding = offset + characters * sizeof(char16_t);
    // If the text overlapped the fields that locate it, the padding could overwrite type or size.
    if (characters % 2 == 1 && offset >= textBlockStart && record->Holds(padding, sizeof(char16_t)))
        std::memset(record->At(static_cast<std::size_t>(padding)), 0, sizeof(char16_t));
    ParseGenericMetafileRecord(record);
}

void CParseEmf::ParseExtCreatePen(EmfRecord* record) {
    constexpr std::size_t brushStyleAt = 36, hatchAt = 44;
    constexpr DWORD solid = 0, hollow = 1;
    const DWORD brushStyle = record->Word(brushStyleAt);
    if ((brushStyle == solid || brushStyle == hollow) && record->Holds(hatchAt, sizeof(DWORD)))
        std::memset(record->At(hatchAt), 0, sizeof(DWORD));
    ParseGenericMetafileRecord(record);
}
