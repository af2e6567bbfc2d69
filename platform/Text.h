#pragma once

/// @file The process's multibyte code page, its case rules and its collation: the one place where bytes become characters.
///
/// Which one that is, qvcommon/CodePage.h says. All functions follow a change of the locale or of the code page made before
/// the call. None raises anything but std::bad_alloc.

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace qv::platform {

enum class CodePage {
    SingleByte,  ///< every byte is a character
    Utf8,
    DoubleByte  ///< lead bytes take a trail byte, or more, with them
};

CodePage CurrentCodePage();

/// The length in bytes of the well-formed character at `position`; 1 for a byte that is no part of one, which then counts
/// as a character of the single-byte code page.
std::size_t CharacterLength(std::string_view text, std::size_t position, CodePage page);

/// In upper or lower case, whole characters at a time; the length may change.
std::string ToUpper(std::string_view text);
std::string ToLower(std::string_view text);

enum class Case { Lower, Upper };

/// The case rules of the bytes that are characters by themselves.
struct ByteCase {
    /// Bytes that are only part of characters stand for themselves.
    std::array<unsigned char, 256> map;
    /// False when some byte becomes a longer character, which the map cannot say (a Turkish "i" in UTF-8).
    bool complete;
};
ByteCase CaseOfBytes(Case which);

/// A character in upper or lower case, as a number: two characters have the same one only if that case gives them the same
/// bytes.
struct CasedCharacter {
    char32_t code;
    std::size_t length;  ///< of the character as it stands in the text, in bytes
};
CasedCharacter ReadCased(std::string_view text, std::size_t position, CodePage page, Case which);

/// A letter, by the code page; white space, by the current locale (the non-breaking space is none). Both take one whole
/// character, as CharacterLength measures it.
bool IsLetter(std::string_view character);
bool IsSpace(std::string_view character);

/// The text without the white space at its start, or end.
std::string_view TrimmedLeft(std::string_view text);
std::string_view TrimmedRight(std::string_view text);

/// The order of two texts under the locale's collation: < 0, 0, > 0. Texts with zero bytes go piece by piece.
int Collate(std::string_view a, std::string_view b);
/// Appends to `key` bytes whose plain order is the collation's but for rare texts, which some systems' collations and keys
/// order differently: who needs the order of Collate has to settle neighbours by it. Returns how many bytes.
std::size_t AppendCollationKey(std::string_view text, std::string& key);

/// Whether the C library's collation reads texts in the process's code page, or else what it reads in their place.
bool CollatesAsItIs();
std::string ForCollation(std::string_view text);

/// To and from 16-bit wide text (UTF-16). What one side cannot hold becomes "?".
std::u16string ToWide(std::string_view text);
std::string FromWide(std::u16string_view text);

}  // namespace qv::platform
