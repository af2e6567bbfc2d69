#pragma once

/// @file The process's multibyte code page, its case rules and its collation: the only place where bytes are decoded
/// into characters.
///
/// qvcommon/CodePage.h defines which code page that is. All functions respect a change of the locale or of the code
/// page made before the call. They raise nothing but std::bad_alloc.

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace qv::platform {

enum class CodePage {
    SingleByte,  ///< every byte is a character
    Utf8,
    DoubleByte  ///< lead bytes are followed by one or more trail bytes
};

CodePage CurrentCodePage();

/// Returns the length in bytes of the well-formed character at `position`; 1 for a byte that is not part of one, which
/// then counts as a character of the single-byte code page. The systems' tables of a double-byte page may differ in
/// which pairs of bytes are characters.
std::size_t CharacterLength(std::string_view text, std::size_t position, CodePage page);

/// Convert to upper or lower case, whole characters at a time; the length may change.
std::string ToUpper(std::string_view text);
std::string ToLower(std::string_view text);

enum class Case { Lower, Upper };

/// The case rules of bytes that are characters by themselves.
struct ByteCase {
    /// Bytes that are only part of characters map to themselves.
    std::array<unsigned char, 256> map;
    /// False if a byte maps to a longer character, which the table cannot represent (a Turkish "i" in UTF-8).
    bool complete;
};
ByteCase CaseOfBytes(Case which);

/// A character in upper or lower case, as a number: two characters have the same number only if that case maps them to
/// the same bytes.
struct CasedCharacter {
    char32_t code;
    std::size_t length;  ///< of the original character, in bytes
};
CasedCharacter ReadCased(std::string_view text, std::size_t position, CodePage page, Case which);

/// Letters by the code page; white space by the current locale (excluding the non-breaking space). Both take one whole
/// character, as measured by CharacterLength.
bool IsLetter(std::string_view character);
bool IsSpace(std::string_view character);

/// Remove leading, or trailing, white space.
std::string_view TrimmedLeft(std::string_view text);
std::string_view TrimmedRight(std::string_view text);

/// Compares two texts by the locale's collation: < 0, 0, > 0. Texts with zero bytes are compared piece by piece.
int Collate(std::string_view a, std::string_view b);
/// Does the same for zero-terminated texts if CollatesInCodePage. Bytes that the C library rejects are compared as bytes.
int CollateStrings(const char* a, const char* b);
/// Appends to `key` bytes whose byte order is that of the collation except for rare texts, for which collation and keys
/// of some systems differ: callers that need the order of Collate must fix up neighbours with it. Returns the number of
/// bytes.
std::size_t AppendCollationKey(std::string_view text, std::string& key);

/// Whether the C library's collation accepts texts in the process's code page, or else the text to pass to it.
bool CollatesInCodePage();
std::string ForCollation(std::string_view text);

/// Convert to and from UTF-16. Characters that the target cannot represent become "?".
std::u16string ToWide(std::string_view text);
std::string FromWide(std::u16string_view text);

}  // namespace qv::platform
