#pragma once

/// @file String utilities. All members are static, stateless and thread-safe, as long as no thread changes the C locale
/// meanwhile.
///
/// Lengths are byte counts, positions byte indexes from 0, and -1 means "not found". A `caseSensitive` flag that is
/// zero makes comparisons ignore case; so does a `noCase` flag that is NOT zero. String arguments may contain zero
/// bytes. Running out of memory raises std::bad_alloc; nothing else is raised unless stated.
///
/// Searches are O(n) for any input, unless a member states its cost.

#include <initializer_list>

#include "qvcommon/framework/Collections.h"

/// Operations on strings and arrays of strings. All members are stateless.
class QVCOMMON_API CStringHelper {
public:
    CStringHelper() = default;
    virtual ~CStringHelper() = default;

    // Comparing and searching (core/StringHelperCompare.cpp)
    //
    // Comparisons that ignore case compare lower-case forms, as CString::CompareNoCase does. An element "matches" a
    // string if it equals it or, with a no-case flag, equals it ignoring case. Members that look up many strings are
    // O(n) in the number of elements, not quadratic.
    //
    // StartsWith and EndsWith compare as many bytes as the prefix or the suffix has. So ignoring case, a part whose
    // other case has a different number of bytes does not match, and a suffix may match inside a double-byte character.

    /// Returns 1 if the strings are equal, else 0.
    static int Equals(std::string_view a, std::string_view b, int caseSensitive = 1);
    /// Does the same after removing every carriage return from both.
    static int EqualIgnoreNewlineType(std::string_view a, std::string_view b, int caseSensitive = 1);

    /// Returns 1 if the string starts with the prefix; every string starts with the empty one.
    static int StartsWith(std::string_view text, std::string_view prefix, int caseSensitive = 1);
    /// On success stores the part after the prefix in `rest`; otherwise leaves it unchanged.
    static int StartsWith(std::string_view text, std::string_view prefix, CString& rest, int caseSensitive = 1);
    /// Returns 1 if the string ends with the suffix; every string ends with the empty one.
    static int EndsWith(std::string_view text, std::string_view suffix, int caseSensitive = 1);

    /// Returns 1 if an element matches the string.
    static int Find(const CStringArray& texts, std::string_view text, int noCase = 0);
    /// Returns 1 if an element of `wanted` matches one of `texts`.
    static int Find(const CStringArray& texts, const CStringArray& wanted, int noCase = 0);
    static int Find(const CStringArray& texts, std::initializer_list<std::string_view> wanted, int noCase = 0);
    /// Returns the index of the first matching element AFTER position `start` (-1 begins at the first); -1 if not
    /// found.
    static int GetIndex(const CStringArray& texts, std::string_view text, int noCase = 0, int start = -1);
    /// Returns the number of elements equal to the string, case-sensitively.
    static int GetCount(const CStringArray& texts, std::string_view text);

    /// Returns 1 if every element of each array matches one of the other: equal as sets, ignoring order and
    /// repetitions.
    static int EqualContents(const CStringArray& a, const CStringArray& b, int noCase = 0);
    /// Partitions the elements of two arrays, case-sensitively, into those only in the old one (`removed`), those in
    /// both, and those only in the new one (`added`); the results are appended to the output arrays. An old element
    /// that occurs several times in the new array is kept once, with its first occurrence.
    static void CompareContents(const CStringArray& oldTexts, const CStringArray& newTexts, CStringArray& removed,
                                CStringArray& kept, CStringArray& added);
    /// Does the same by index: `keptInOld` and `keptInNew` are the two indexes of each kept string.
    static void CompareContents(const CStringArray& oldTexts, const CStringArray& newTexts, CUIntArray& removed,
                                CUIntArray& keptInOld, CUIntArray& keptInNew, CUIntArray& added);
    /// For every string of `chosen` that occurs in `all`, case-sensitively, sets the flag at its first index to 1.
    /// Other flags are unchanged. @throws CInvalidArgException* if `flags` is too short for an index to be set.
    static void SetInstanceOf(const CStringArray& all, const CStringArray& chosen, CUIntArray& flags);

    /// Counts the non-overlapping occurrences of `find`, case-sensitively; 0 for an empty `find`.
    static int CountOf(std::string_view text, std::string_view find);
    static int CountOf(std::string_view text, char c);
    template <qv::NoCharacter T>
    static int CountOf(std::string_view, T) = delete;

    /// Each: Returns 1 if the string equals its lower-case (upper-case) form; a string without letters is both.
    static int IsLowerCase(std::string_view text);
    static int IsUpperCase(std::string_view text);
    /// Returns 1 if the string is not empty and consists of decimal digits.
    static int IsNumeric(std::string_view text);
    /// Returns 1 for 38 bytes that start with "{", end with "}" and have "-" at positions 9, 14 and 19. Nothing else is
    /// checked.
    static int IsGuid(std::string_view text);
    /// Returns 1 for 36 bytes that have "-" at positions 8, 13 and 18. Nothing else is checked.
    static int IsBracelessGuid(std::string_view text);

    // Case and white space (core/StringHelperCase.cpp)
    //
    // Letters, case and white space are those of the current locale; digits are 0 to 9. In a multibyte code page "byte"
    // means character here: characters are never split.

    /// Returns the string in lower case, its first byte in upper case.
    static CString MakeSentenceCase(std::string_view text);
    /// Does the same, with the first letter after every space in upper case, even if other characters are in between.
    static CString MakeTitleCase(std::string_view text);
    /// Converts the first byte of every word to upper case. Words are separated by white space and by the bytes of
    /// `separators`.
    /// @param keepCapitals  non-zero: words all in upper case are unchanged.
    /// @param keepRest  zero: the rest of each word is converted to lower case.
    static CString MakeTitleCase(std::string_view text, int keepCapitals, int keepRest, std::string_view separators);

    /// Removes white space at both ends.
    static CString TrimString(std::string_view text);
    /// Removes white space at both ends of each element.
    static void TrimItems(CStringArray& texts);
    /// Does the same, under the name used by older callers.
    static void TrimStringArray(CStringArray& texts) { TrimItems(texts); }
    /// Removes elements that are empty or consist of white space.
    static void RemoveBlanks(CStringArray& texts);

    /// Converts every newline, be it CR LF, CR or LF, to CR LF.
    static CString GetEditFriendlyNewlines(std::string_view text);
    /// Converts every CR to CR LF, even before an LF: CR LF becomes CR LF LF.
    static CString PrintableNewlines(std::string_view text);
    /// Returns `tabs` tabs, the string, and an LF if `newline` is non-zero.
    static CString GetIndentedString(std::string_view text, int tabs, int newline = 0);

    /// Removes every occurrence of each of the characters and returns their number.
    static int StripChars(CString& text, std::string_view characters);
    /// Replaces every byte that is neither letter nor digit by "_".
    static CString ValidateParameter(std::string_view text);
    /// Returns the number of runs of letters and digits.
    static int GetWordCount(std::string_view text);

    /// Returns both strings, separated by the separator unless one of them is empty.
    static CString AddString(std::string_view text, std::string_view addition, std::string_view separator);
    /// Returns the formatted string (see Format.h).
    template <class... A>
    static CString Format(qv::FormatText<std::type_identity_t<A>...> format, const A&... values) {
        CString text;
        text.Format(format, values...);
        return text;
    }

    // Lists of texts (core/StringHelperLists.cpp, core/StringHelperCsv.cpp, core/StringHelperDuplicates.cpp)
    //
    // An output array may also be an input, and a string argument may be one of its elements; two output arrays must be
    // different.

    /// Appends the pieces between the occurrences of the separator, including the one after the last; empty pieces only
    /// if `keepEmpty` is non-zero. "a,,b" at "," gives "a", "b" or "a", "", "b". The separator is matched
    /// case-sensitively, left to right; an empty one never matches, so the string is one piece.
    static void SplitString(std::string_view text, std::string_view separator, CStringArray& pieces, int keepEmpty = 0);
    static CStringArray SplitString(std::string_view text, std::string_view separator, int keepEmpty = 0);
    /// Splits at any of the given characters, and appends the trimmed pieces that are not empty.
    static void SplitCharsString(std::string_view text, std::string_view separators, CStringArray& pieces);
    static CStringArray SplitCharsString(std::string_view text, std::string_view separators);

    /// Appends the elements 0 to `lastIndex` to `out`, with the separator between them. Empty elements are written only
    /// if `keepEmpty` is non-zero. -1, and any index past the end, means all elements; other negative ones mean none.
    static void MakeString(const CStringArray& texts, std::string_view separator, CString& out, int lastIndex = -1,
                           int keepEmpty = 0);
    static CString MakeString(const CStringArray& texts, std::string_view separator, int lastIndex = -1,
                              int keepEmpty = 0);
    /// Returns a list for display: the elements with the separator between them, or " and " between the last two if
    /// `useAnd` is non-zero. With ", ": "a, b and c".
    static CString MakeList(const CStringArray& texts, int useAnd = 1, std::string_view separator = ", ");

    /// Returns the elements joined by ","; a comma inside an element is written as the five characters \0x2C.
    static CString StringArrayToString(const CStringArray& texts);
    /// The inverse. Clears the array first. Empty elements are lost, and an element that contained the five characters
    /// themselves is read with a comma.
    static void StringToStringArray(std::string_view text, CStringArray& texts);
    static CStringArray StringToStringArray(std::string_view text);

    /// Reads one record of comma-separated values. Clears the array first. A quote at any position opens a quoted part;
    /// in it, two quotes are one, and a single one closes it. A comma outside ends the field. All other bytes are kept,
    /// including blanks and newlines. An unclosed quoted part extends to the end. An empty string is one empty field.
    static void CsvToArray(std::string_view text, CStringArray& fields);
    static CStringArray CsvToArray(std::string_view text);
    /// Returns one record of comma-separated values, without a newline. Fields with a quote or a comma are quoted,
    /// others written verbatim: CsvToArray restores any array except the empty one.
    static CString ArrayToCsv(const CStringArray& fields);

    /// Appends each zero-terminated string of the buffer up to the first empty one. A null buffer contains none. The
    /// size is not checked: the caller guarantees the two zero bytes at the end.
    static void FromMultiSz(const char* buffer, CStringArray& texts);
    /// Returns the number of bytes that ToMultiSz needs to write every element whole.
    static unsigned long CalculateMultiSzBufferSize(const CStringArray& texts);
    /// Writes the elements, each with a zero byte, and a final zero byte, never more than `size` bytes. The first
    /// element that does not fit is truncated, those after it are left out. A size below 3 holds no element: all its
    /// bytes become zero.
    static void ToMultiSz(const CStringArray& texts, char* buffer, unsigned long size);

    /// Fills `out` with a[i], a line feed, b[i].
    /// @throws CInvalidArgException* if b is shorter than a; `out` is then unchanged.
    static void MungeStringArrays(const CStringArray& a, const CStringArray& b, CStringArray& out);
    /// The inverse: splits each element at its first line feed. One without it is stored in `a`, with an empty string
    /// in `b`.
    static void UnmungeStringArrays(const CStringArray& munged, CStringArray& a, CStringArray& b);

    /// Prepends the string to every element.
    static void PrependString(CStringArray& texts, std::string_view text);
    /// Copies every entry, replacing the values of existing keys; other keys of the target are kept.
    static void CopyStringMap(const CMapStringToString& source, CMapStringToString& target);

    // The following are O(n) in the size of their arrays, for any content.

    /// Keeps the first of equal strings, in order.
    static void RemoveDuplicates(CStringArray& texts, int noCase = 0);
    static void RemoveDuplicates(CDWordArray& values);
    /// Keeps the first of equal pairs (a[i], b[i]), in order. Elements of b past the end of a are removed.
    /// @throws CInvalidArgException* if b is shorter than a; both are then unchanged.
    static void RemoveDuplicates(CStringArray& a, CStringArray& b, int noCase = 0);
    /// Removes every element that equals the string (any of the strings), and returns their number.
    static int RemoveInstancesOf(CStringArray& texts, std::string_view text, int caseSensitive = 1);
    static int RemoveInstancesOf(CStringArray& texts, const CStringArray& unwanted, int caseSensitive = 1);
    /// Merges equal names, case-sensitively: keeps the first occurrence of each, with the sum of its values, added in
    /// order. Values past the end of the names are removed.
    /// @throws CInvalidArgException* if there are fewer values than names; both are then unchanged.
    static void CollateValues(CStringArray& names, CDoubleArray& values);

    // Sorting (core/StringHelperSort.cpp)
    //
    // Sorts by the collation of the current locale, or by the length in bytes (BySize); in reverse if `descending` is
    // non-zero. The sort is stable. The order is that of CString::Collate, for any number of strings. Companions are
    // moved with their strings, regardless of their values: pointers are never dereferenced, and may have any width.
    // Companions past the end of the strings are not moved. If there are fewer companions than strings,
    // CInvalidArgException* is raised and nothing is changed. An array may be passed more than once, even the strings
    // as their own companions: it is sorted once.

    /// Each: Sorts only the strings.
    static void SortStringArray(CStringArray& texts, int descending = 0);
    static void SortStringList(CStringList& texts, int descending = 0);
    static void SortStringArrayBySize(CStringArray& texts, int descending = 0);

    /// Each: Sorts the strings, and the other arrays with them.
    static void SortStringArray(CStringArray& texts, CPtrArray& companions, int descending = 0);
    static void SortStringArrayBySize(CStringArray& texts, CPtrArray& companions, int descending = 0);
    static void SortStringArray(CStringArray& texts, CStringArray& companions, int descending = 0);
    static void SortStringArrayBySize(CStringArray& texts, CStringArray& companions, int descending = 0);
    static void SortStringArray(CStringArray& texts, CStringArray& first, CStringArray& second, int descending = 0);
    static void SortStringArray(CStringArray& texts, CStringArray& first, CUIntArray& second, int descending = 0);
    /// Does the same, ascending only.
    static void SortStringArray(CStringArray& texts, CDoubleArray& companions);
    static void SortStringArray(CStringArray& texts, CUIntArray& companions);

    /// Each: Sorts, and stores in `indexes` the former index of each element.
    static void IndexSortCStringArray(CStringArray& texts, CDWordArray& indexes, int descending = 0);
    static void IndexSortDwordArray(CDWordArray& values, CDWordArray& indexes, int descending = 0);

    // Numbers as text (core/StringHelperNumbers.cpp)
    //
    // The decimal point is that of the current C locale, as in printf.

    /// Formats as printf's %g.
    static CString ToString(double value);
    /// Returns the values joined by ",", each as a signed number: 4294967295 is "-1".
    static CString ToString(const CUIntArray& values);
    /// Appends the numbers of a comma-separated list; empty pieces are ignored. Each is parsed as atoi does: white
    /// space, a sign, digits, up to the first other byte. Both "-1" and "4294967295" give 4294967295: a number too
    /// large is reduced modulo 2 to the power 32.
    static void FromString(std::string_view text, CUIntArray& values);

    /// Returns the integer part, the separator, and the fraction in units of 1/base, truncated to a whole number of at
    /// least two characters: 2.5 to the base 60 with ":" is "2:30". The parts of a negative value have the sign: -2.5 is
    /// "-2:-30", -0.5 is "0:-30".
    static CString ToBasedString(double value, int base, std::string_view separator);

    /// Returns the value in the unit `unitNames[index]`, that is divided by `thresholds[index]`: "1.5 KB". Index -2
    /// selects the highest threshold at or below the value, -1 the value itself, in `unitName`. `%%` in a unit's name
    /// is one percent sign. Negative `decimals` mean six.
    /// @throws CInvalidArgException* for an index outside either array.
    static CString RebaseUnits(double value, std::string_view unitName, const CDoubleArray& thresholds,
                               const CStringArray& unitNames, int decimals = 0, int index = -2);
    /// Does the same with index -2, always adding one before rounding to the nearest whole number, and an "s" after the
    /// unit: 2048 at the threshold 1024 is "3 KBs".
    /// @throws CInvalidArgException* if the unit's name is missing.
    static CString RebaseUnitsRoundUp(double value, std::string_view unitName, const CDoubleArray& thresholds,
                                      const CStringArray& unitNames);
    /// Returns the value as a sum of units: "1 hour, 2 minutes, 5 seconds". Repeatedly takes the highest threshold at
    /// or below the rest; a rest that is not zero, or the only part, is in the base unit. A count above 1 gets an "s"
    /// after its unit if `plural` is non-zero. Counts are truncated to whole numbers. Thresholds that are not above
    /// zero end the search, so it always terminates; a value that is not finite is in the base unit.
    /// @throws CInvalidArgException* if a unit's name is missing.
    static CString ToMultibase(double value, std::string_view baseUnitName, const CDoubleArray& thresholds,
                               const CStringArray& unitNames, int plural = 1);

    // The user's locale, version resources, errors, identifiers, clipboard (core/StringHelperSystem.cpp)

    /// Returns the user's currency symbol; "$" if it is not set or has 10 bytes or more. On Windows from the registry
    /// (value "sCurrency" of "Control Panel\International"), on Linux from the locale category LC_MONETARY.
    static CString GetLocalCurrency();
    /// Formats the amount by the user's locale; empty if it is not finite or takes 260 bytes or more. On Windows by the
    /// system's user locale, on Linux by LC_MONETARY.
    static CString InternationalizeCurrency(double amount);
    /// Returns the user's list separator; "," if the system has none below 4 bytes. Linux locales do not define it:
    /// there it is ";" if the comma is the decimal point, as in spreadsheets, else ",".
    static CString GetLocaleListSeperator();

    // Version resources of program files. Linux files have none: the results are 0 or empty.

    /// Returns the first translation: language in the high 16 bits, code page in the low ones; 0 if absent.
    static unsigned long GetLanguageCodepage(std::string_view file);
    /// Returns a value of the first translation, such as "CompanyName"; empty if absent.
    static CString GetVersionInfo(std::string_view file, std::string_view key);
    /// Returns the value "FileVersion", as written by its author.
    static CString GetVersionString(std::string_view file);
    /// Returns the numeric version, "1.2.3.4"; empty if absent.
    static CString GetFileVersionAsString(std::string_view file);

    /// Returns the system's text for the error, on Windows with its newline; empty if unknown.
    static CString GetErrorMessage(unsigned long error);
    /// Returns the text for the calling thread's last error (errno on Linux).
    static CString GetLastErrorString();

    /// Returns a new identifier in registry form, upper case, "{01234567-89AB-4CDE-8F01-23456789ABCD}", without the
    /// braces if `braces` is 0. Empty if the system cannot create one.
    static CString GetNewGuid(int braces = 1);

    // The clipboard. A window may be null; formats are the system's numbers, 1 is plain text. Not available on Linux:
    // reading returns an empty string, writing is a no-op.

    /// Returns the data up to its first zero byte; empty if the clipboard has no data of that format or cannot be
    /// opened.
    static CString GetClipboard(HWND window, unsigned int format);
    /// Replaces the clipboard's content. No-op if it cannot be opened.
    static void SetClipboard(HWND window, std::string_view text, unsigned int format);
    /// Returns the clipboard's plain text converted by TextAsVbScript, showing the wait cursor; empty if it has none.
    static CString GetClipboardAsVbScript(HWND window, std::string_view variable, int escapePercent);
    /// Returns script source whose value is the string: quoted runs, each tab as chr(9), and chr(10) after every line,
    /// including the last. With a variable's name, one statement per line that appends to it; without, one expression
    /// that ends in " + ". Any newline ends a line. With `escapePercent`, "%" is written as "\%".
    static CString TextAsVbScript(std::string_view text, std::string_view variable, int escapePercent);

    /// Obfuscates a string with a key, as hexadecimal pairs in upper case; the first is random, so the result differs
    /// each time. This is NOT cryptography: it protects only from a casual glance, keeps no secret from an attacker,
    /// and does not detect tampering.
    static CString SimpleEncrypt(std::string_view text, std::string_view key);
    /// The inverse, with the same key on any system. Input that is not a whole number of hexadecimal pairs gives an
    /// empty string; a wrong key gives some other string.
    static CString SimpleDecrypt(std::string_view coded, std::string_view key);

    // Cutting at markers (core/StringHelperMarkers.cpp)
    //
    // Markers are matched case-sensitively, unless a flag says otherwise, and only as whole characters: half of a
    // double-byte character never matches. An empty marker matches where the search starts. Members that return int
    // return 1 if the marker was found, else 0 without changes.
    //
    // A CString moves the kept part to its front, which costs O(n) per call. A view only moves its ends, so that
    // consuming a long string in many calls takes linear time in total, unless GetStringBetween misses an end marker:
    // each such call searches all of the rest.

    /// Keeps the text BEFORE the marker's first occurrence.
    static int StripBefore(CString& text, std::string_view marker);
    static int StripBefore(std::string_view& text, std::string_view marker);
    /// Keeps the text AFTER the marker's first occurrence.
    static int StripAfter(CString& text, std::string_view marker);
    static int StripAfter(std::string_view& text, std::string_view marker);
    /// Stores the text before the marker's first occurrence in `head`; `text` keeps the text after it.
    static int StripLeft(CString& text, std::string_view marker, CString& head);
    static int StripLeft(std::string_view& text, std::string_view marker, std::string_view& head);
    /// Removes leading characters that are in the set.
    static void StripFromLeft(CString& text, std::string_view characters);
    /// Returns the text up to the marker's first occurrence; all of it without one.
    static CString RemoveAfter(std::string_view text, std::string_view marker, int noCase = 0);
    /// Returns the text between the first start marker and the next end marker, or the end of the source. Without a
    /// start marker the result is empty and the source unchanged. If the end marker was found and `consumeEnd` is
    /// non-zero, the source keeps the text after the end marker; otherwise, if `consumeStart` is non-zero, the text
    /// after the start marker.
    static CString GetStringBetween(CString& source, std::string_view startMarker, std::string_view endMarker,
                                    int consumeStart = 0, int consumeEnd = 1);
    static std::string_view GetStringBetween(std::string_view& source, std::string_view startMarker,
                                             std::string_view endMarker, int consumeStart = 0, int consumeEnd = 1);
    /// Returns 1 if the start marker occurs and no end marker is before or at its first occurrence.
    static int IsStringInRange(std::string_view text, std::string_view startMarker, std::string_view endMarker);
    /// Returns 1 if the word occurs with a space after it, or if its FIRST occurrence ends the text. The text before
    /// the word is not checked: "concat " contains the word "cat".
    static int FindWholeWord(std::string_view text, std::string_view word);

    // Finding and replacing (core/StringHelperReplace.cpp)

    /// Returns the position in `text`, at or after `start`, of `find`, comparing both in upper case; -1 if not found.
    /// Only whole characters match; `start` must be the beginning of one. The empty string matches at `start`. O(n) in
    /// the distance to the result, for any input.
    static int FindNoCase(std::string_view text, std::string_view find) { return FindNoCase(text, find, 0); }
    static int FindNoCase(std::string_view text, std::string_view find, int start);

    /// Replaces matches of FindNoCase from left to right; each search continues one character after the position of the
    /// last match, and thus includes the replacement and what now follows it. (An empty replacement thus protects the
    /// character after the removed text from being removed next.) A replacement that contains `find` anywhere but at
    /// its start would not terminate: then each occurrence in the text is replaced once and the replacements are not
    /// searched. No-op for an empty `find`.
    static void ReplaceNoCase(CString& text, std::string_view find, std::string_view replacement);

    /// Replaces all occurrences, case-sensitively, in repeated passes from left to right, until a pass finds none: two
    /// spaces replaced by one leave no two spaces anywhere. A replacement that contains `find` would not terminate: it
    /// gets one pass. One that is no shorter than `find` may take very long, or for ever ("ab" by "bbaa"): it stops
    /// once the passes after the first have written 2 MB and 16 times the text. No-op for an empty `find`.
    ///
    /// O(n) in the text and, after the first pass, in the number of replacements times the length of both strings. In a
    /// double-byte code page each pass processes the whole text, which counts as written.
    static void ReplaceAll(CString& text, std::string_view find, std::string_view replacement);

    /// Replaces the text between each start marker and the next end marker, from left to right; both markers are kept,
    /// and the search continues at the end marker, which may thus be the next start marker. A start marker without an
    /// end marker after it is left unchanged; an empty start marker never matches.
    static CString ReplaceBetween(std::string_view text, std::string_view startMarker, std::string_view endMarker,
                                  std::string_view replacement);

    /// Wraps the text into lines of at most `width` bytes, for display. It is trimmed; its own newlines are kept, and
    /// count as one byte. While the rest is longer than `width`, its first `width` bytes determine the end of the line:
    /// their first newline, else their last space unless that is the first byte, else the end of as many whole
    /// characters as fit, at least one. So a newline directly after them is not noticed: at width 3 "abc\ndef" has an
    /// empty line in the middle, and at width 5 the first line of "ab cd\nefgh" is "ab". A rest that is no longer than
    /// `width` is kept as it is. All newlines become CR LF. A width below 1 counts as 1.
    static CString MakeMultiLine(std::string_view text, int width);

    // Addresses and forms (core/StringHelperUrl.cpp)

    /// Returns 0 for letters, digits and ! ' ( ) * - . / : _ ~, else 1.
    static int IsUnsafeUrlChar(char c);
    /// Encodes as form data (application/x-www-form-urlencoded): a space as "+", every other unsafe byte as "%" and two
    /// lower-case hexadecimal digits. "a,b & c" becomes "a%2cb+%26+c".
    static CString Escape(std::string_view text);
    /// Percent-encodes a path for an address (RFC 3986): letters, digits and - . _ ~ / are kept, every other byte
    /// becomes "%" and two upper-case hexadecimal digits. "a b/c#1" becomes "a%20b/c%231".
    static CString EscapePath(std::string_view path);
    /// The inverse of Escape, in place. A "%" without two hexadecimal digits becomes "?": if the first digit is missing
    /// the character in its place is dropped, if the second is missing both are; at the end of the text the incomplete
    /// escape is dropped.
    static void Unescape(CString& text);
    /// Decodes "%" and two hexadecimal digits, from left to right; "+" is kept. Each sequence is decoded everywhere in
    /// the text at once, and decoding continues at its position, so that sequences formed by decoding are decoded too:
    /// "%2541" becomes "A", and "%32%25%3235" becomes "2#5". A "%" without two hexadecimal digits is kept.
    static CString UnEscapeUrl(std::string_view text);
    /// Splits the fields of form data, "name=value&name=value", unescapes both parts and appends them to the arrays.
    /// The first "=" separates them; fields without one are ignored.
    static void ParseRawHttpParams(std::string_view text, CStringArray& names, CStringArray& values);
    /// Returns the path of a file address: "file:" and the slashes after it are removed, ignoring the case of ASCII; a
    /// string without "file:" keeps its slashes. If `unescape` is non-zero the string is first decoded by UnEscapeUrl;
    /// if `backslashes` is non-zero every "/" becomes "\". If no file or folder of that name (up to the first "#")
    /// exists, but one with "\" before it does, a "\" is prepended. The part from "#" on is always kept.
    static CString RemoveFileProtocol(std::string_view text, int unescape = 1, int backslashes = 1);
};
