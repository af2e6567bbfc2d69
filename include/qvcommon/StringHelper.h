#pragma once

/// @file The text toolbox. All members are static and free of state, safe from any thread as long as no thread changes the
/// C locale meanwhile.
///
/// Lengths are byte counts, positions byte indexes from 0, and -1 means "not found". A `caseSensitive` flag that is zero
/// lets texts match that differ in case only; a `noCase` flag that is NOT zero does the same. Text arguments may hold zero
/// bytes. Memory running out raises std::bad_alloc; nothing else is raised but where a member says so.
///
/// Searches take time linear in the texts, whatever these hold, but where a member names its cost.

#include <initializer_list>

#include "qvcommon/framework/Collections.h"

/// Operations on texts and on arrays of texts. All members are free of state.
class QVCOMMON_API CStringHelper {
public:
    CStringHelper() = default;
    virtual ~CStringHelper() = default;

    // Comparing and searching (core/StringHelperCompare.cpp)
    //
    // Texts that are compared without regard to case are equal when their lower-case forms are, as CString::CompareNoCase
    // has it. An element "matches" a text when it equals it, or, with a no-case flag, when it does so without regard to
    // case. Members that look up many texts take time linear in the number of elements, not with its square.

    /// 1 if the texts are equal, else 0.
    static int Equals(std::string_view a, std::string_view b, int caseSensitive = 1);
    /// The same after every carriage return has been taken out of both.
    static int EqualIgnoreNewlineType(std::string_view a, std::string_view b, int caseSensitive = 1);

    /// 1 if the first bytes of the text, as many as the prefix has, equal it; every text starts with the empty one.
    static int StartsWith(std::string_view text, std::string_view prefix, int caseSensitive = 1);
    /// On success `rest` is what follows the prefix; otherwise it is left alone.
    static int StartsWith(std::string_view text, std::string_view prefix, CString& rest, int caseSensitive = 1);
    /// 1 if the last bytes of the text, as many as the suffix has, equal it; every text ends with the empty one.
    static int EndsWith(std::string_view text, std::string_view suffix, int caseSensitive = 1);

    /// 1 if some element matches the text.
    static int Find(const CStringArray& texts, std::string_view text, int noCase = 0);
    /// 1 if some element of `wanted` matches one of `texts`.
    static int Find(const CStringArray& texts, const CStringArray& wanted, int noCase = 0);
    static int Find(const CStringArray& texts, std::initializer_list<std::string_view> wanted, int noCase = 0);
    /// The index of the first matching element AFTER position `start` (-1 begins at the first); -1 if there is none.
    static int GetIndex(const CStringArray& texts, std::string_view text, int noCase = 0, int start = -1);
    /// How many elements equal the text, case and all.
    static int GetCount(const CStringArray& texts, std::string_view text);

    /// 1 if every element of each array matches one of the other: equal as sets, whatever the order and repetitions.
    static int EqualContents(const CStringArray& a, const CStringArray& b, int noCase = 0);
    /// Sorts the elements of two arrays, case and all, into those only in the old one (`removed`), those in both, and
    /// those only in the new one (`added`); the results are appended to the output arrays. An old element that stands in
    /// the new array several times is kept once, with the first of them.
    static void CompareContents(const CStringArray& oldTexts, const CStringArray& newTexts, CStringArray& removed,
                                CStringArray& kept, CStringArray& added);
    /// The same by index: `keptInOld` and `keptInNew` are the two indexes of each kept text.
    static void CompareContents(const CStringArray& oldTexts, const CStringArray& newTexts, CUIntArray& removed,
                                CUIntArray& keptInOld, CUIntArray& keptInNew, CUIntArray& added);
    /// For every text of `chosen` that stands in `all`, case and all, sets the flag at its first index to 1. Other flags
    /// are left alone. @throws CInvalidArgException* when `flags` is too short for an index to be set.
    static void SetInstanceOf(const CStringArray& all, const CStringArray& chosen, CUIntArray& flags);

    /// How often `find` occurs, case and all, each search going on after the occurrence before; 0 for an empty `find`.
    static int CountOf(std::string_view text, std::string_view find);
    static int CountOf(std::string_view text, char c);
    template <qv::NoCharacter T>
    static int CountOf(std::string_view, T) = delete;

    /// Each: 1 if the text is its own lower-case (upper-case) form; a text without letters is both.
    static int IsLowerCase(std::string_view text);
    static int IsUpperCase(std::string_view text);
    /// 1 if the text is not empty and every byte is a decimal digit.
    static int IsNumeric(std::string_view text);
    /// 1 for 38 bytes that start with "{", end with "}" and have "-" at positions 9, 14 and 19. Nothing else is looked at.
    static int IsGuid(std::string_view text);
    /// 1 for 36 bytes that have "-" at positions 8, 13 and 18. Nothing else is looked at.
    static int IsBracelessGuid(std::string_view text);

    // Case and white space (core/StringHelperCase.cpp)
    //
    // Letters, case and white space are those of the current locale; digits are 0 to 9. In a code page with characters of
    // several bytes "byte" means character here: none is torn.

    /// The text in lower case, its first byte in upper case.
    static CString MakeSentenceCase(std::string_view text);
    /// The same, and after every space the next letter in upper case, whatever stands between.
    static CString MakeTitleCase(std::string_view text);
    /// Puts the first byte of every word into upper case. Words are parted by white space and by the bytes of `separators`.
    /// @param keepCapitals  not zero: words all in upper case stay as they are.
    /// @param keepRest  zero: the rest of each word is put into lower case.
    static CString MakeTitleCase(std::string_view text, int keepCapitals, int keepRest, std::string_view separators);

    /// Without white space at either end.
    static CString TrimString(std::string_view text);
    /// Takes the white space at both ends from each element.
    static void TrimItems(CStringArray& texts);
    /// The same, under the name that older callers use.
    static void TrimStringArray(CStringArray& texts) { TrimItems(texts); }
    /// Removes the elements that consist of white space, or of nothing.
    static void RemoveBlanks(CStringArray& texts);

    /// Every line end, be it CR LF, CR or LF, as CR LF.
    static CString GetEditFriendlyNewlines(std::string_view text);
    /// Every CR as CR LF, also one that an LF follows already: CR LF becomes CR LF LF.
    static CString PrintableNewlines(std::string_view text);
    /// So many tabs, the text, and an LF if `newline` is not zero.
    static CString GetIndentedString(std::string_view text, int tabs, int newline = 0);

    /// Removes every occurrence of each of the characters and returns how many there were.
    static int StripChars(CString& text, std::string_view characters);
    /// Every byte that is neither letter nor digit as "_".
    static CString ValidateParameter(std::string_view text);
    /// The number of runs of letters and digits.
    static int GetWordCount(std::string_view text);

    /// Both texts, with the separator between them unless one of them is empty.
    static CString AddString(std::string_view text, std::string_view addition, std::string_view separator);
    /// The formatted text (see Format.h).
    template <class... A>
    static CString Format(qv::FormatText<std::type_identity_t<A>...> format, const A&... values) {
        CString text;
        text.Format(format, values...);
        return text;
    }

    // Lists of texts (core/StringHelperLists.cpp, core/StringHelperCsv.cpp, core/StringHelperDuplicates.cpp)
    //
    // An array that an operation writes may also be one that it reads, and a text argument may be one of its elements; two
    // arrays that it writes have to be different ones.

    /// Appends the pieces between the occurrences of the separator, and the one after the last; empty pieces only when
    /// `keepEmpty` is not zero. "a,,b" at "," gives "a", "b" or "a", "", "b". The separator is found case and all, left
    /// to right; an empty one occurs nowhere, so the text is one piece.
    static void SplitString(std::string_view text, std::string_view separator, CStringArray& pieces, int keepEmpty = 0);
    static CStringArray SplitString(std::string_view text, std::string_view separator, int keepEmpty = 0);
    /// Appends the pieces between any of the given characters, trimmed, those that are not empty then.
    static void SplitCharsString(std::string_view text, std::string_view separators, CStringArray& pieces);
    static CStringArray SplitCharsString(std::string_view text, std::string_view separators);

    /// Appends the elements 0 to `lastIndex` to `out`, the separator between each two that are written. Empty elements are
    /// written only when `keepEmpty` is not zero. -1, and any index past the end, means all elements; other negative
    /// ones mean none.
    static void MakeString(const CStringArray& texts, std::string_view separator, CString& out, int lastIndex = -1,
                           int keepEmpty = 0);
    static CString MakeString(const CStringArray& texts, std::string_view separator, int lastIndex = -1,
                              int keepEmpty = 0);
    /// A list for readers: the elements with the separator between them, or " and " between the last two when `useAnd` is
    /// not zero. With ", ": "a, b and c".
    static CString MakeList(const CStringArray& texts, int useAnd = 1, std::string_view separator = ", ");

    /// The elements joined by ","; a comma inside an element is written as the five characters \0x2C.
    static CString StringArrayToString(const CStringArray& texts);
    /// The way back. Clears the array first. Empty elements are lost, and an element that held the five characters
    /// themselves comes back with a comma.
    static void StringToStringArray(std::string_view text, CStringArray& texts);
    static CStringArray StringToStringArray(std::string_view text);

    /// Reads one record of comma-separated values. Clears the array first. A quote opens a quoted part wherever it stands;
    /// in it, two quotes are one, and a single one closes it. A comma outside ends the field. All other bytes are kept,
    /// blanks and line ends too. A quoted part that is never closed reaches to the end. An empty text is one empty field.
    static void CsvToArray(std::string_view text, CStringArray& fields);
    static CStringArray CsvToArray(std::string_view text);
    /// One record of comma-separated values, no line end. Fields with a quote or a comma are quoted, others written as they
    /// are: CsvToArray gives any array but the empty one back.
    static CString ArrayToCsv(const CStringArray& fields);

    /// Appends each zero-terminated text of the buffer up to the first empty one. A null buffer holds none. There is no
    /// size to check: the caller vouches for the two zero bytes at the end.
    static void FromMultiSz(const char* buffer, CStringArray& texts);
    /// The bytes that ToMultiSz needs to write every element whole.
    static unsigned long CalculateMultiSzBufferSize(const CStringArray& texts);
    /// Writes the elements, each with a zero byte, and a final zero byte, never more than `size` bytes. The element
    /// that does not fit is cut, those after it are left out. A size below 3 holds no element: all its bytes become zero.
    static void ToMultiSz(const CStringArray& texts, char* buffer, unsigned long size);

    /// Fills `out` with a[i], a line feed, b[i].
    /// @throws CInvalidArgException* when b is shorter than a; `out` is unchanged then.
    static void MungeStringArrays(const CStringArray& a, const CStringArray& b, CStringArray& out);
    /// The way back: cuts each element at its first line feed. One without any goes into `a`, with an empty text in `b`.
    static void UnmungeStringArrays(const CStringArray& munged, CStringArray& a, CStringArray& b);

    /// Puts the text before every element.
    static void PrependString(CStringArray& texts, std::string_view text);
    /// Copies every entry. Keys that the target has get the new value; its other keys stay.
    static void CopyStringMap(const CMapStringToString& source, CMapStringToString& target);

    // The following take time linear in the size of their arrays, whatever these hold.

    /// Keeps the first of equal texts, in order.
    static void RemoveDuplicates(CStringArray& texts, int noCase = 0);
    static void RemoveDuplicates(CDWordArray& values);
    /// Keeps the first of equal pairs (a[i], b[i]), in order. Elements of b past the end of a belong to no pair and go.
    /// @throws CInvalidArgException* when b is shorter than a; both are unchanged then.
    static void RemoveDuplicates(CStringArray& a, CStringArray& b, int noCase = 0);
    /// Removes every element that equals the text (any of the texts), and returns how many.
    static int RemoveInstancesOf(CStringArray& texts, std::string_view text, int caseSensitive = 1);
    static int RemoveInstancesOf(CStringArray& texts, const CStringArray& unwanted, int caseSensitive = 1);
    /// Leaves each name once, where it stood first, case-sensitively, with the sum of its values, added in their order.
    /// Values past the end of the names belong to none and go.
    /// @throws CInvalidArgException* when there are fewer values than names; both are unchanged then.
    static void CollateValues(CStringArray& names, CDoubleArray& values);

    // Sorting (core/StringHelperSort.cpp)
    //
    // By the collation of the current locale, or by the length in bytes (BySize); the other way round when `descending` is
    // not zero. Texts that sort alike stay in the order they had. The order is that of CString::Collate, for any number of
    // texts. Companions go with their texts, whatever their values:
    // a pointer is never looked at, and none is too wide. Companions past the end of the texts stay where they are. When
    // there are fewer companions than texts, CInvalidArgException* is raised and nothing has changed. An array may be given
    // more than once, the texts as their own companions too: it is sorted once.

    /// Each: sorts the texts alone.
    static void SortStringArray(CStringArray& texts, int descending = 0);
    static void SortStringList(CStringList& texts, int descending = 0);
    static void SortStringArrayBySize(CStringArray& texts, int descending = 0);

    /// Each: sorts the texts, and the other arrays with them.
    static void SortStringArray(CStringArray& texts, CPtrArray& companions, int descending = 0);
    static void SortStringArrayBySize(CStringArray& texts, CPtrArray& companions, int descending = 0);
    static void SortStringArray(CStringArray& texts, CStringArray& companions, int descending = 0);
    static void SortStringArrayBySize(CStringArray& texts, CStringArray& companions, int descending = 0);
    static void SortStringArray(CStringArray& texts, CStringArray& first, CStringArray& second, int descending = 0);
    static void SortStringArray(CStringArray& texts, CStringArray& first, CUIntArray& second, int descending = 0);
    /// The same, ascending only.
    static void SortStringArray(CStringArray& texts, CDoubleArray& companions);
    static void SortStringArray(CStringArray& texts, CUIntArray& companions);

    /// Each: Sorts, and fills `indexes` with the index that each element had before.
    static void IndexSortCStringArray(CStringArray& texts, CDWordArray& indexes, int descending = 0);
    static void IndexSortDwordArray(CDWordArray& values, CDWordArray& indexes, int descending = 0);

    // Numbers as text (core/StringHelperNumbers.cpp)
    //
    // The decimal point is that of the C locale in force, as printf writes it.

    /// As printf's %g.
    static CString ToString(double value);
    /// The values joined by ",", each as a signed number: 4294967295 is "-1".
    static CString ToString(const CUIntArray& values);
    /// Appends the numbers of a list with "," between them; empty pieces count for nothing. Each is read as atoi does:
    /// white space, a sign, digits, up to the first byte that is none of these. Both "-1" and "4294967295" give
    /// 4294967295: a number too large is taken modulo 2 to the power 32.
    static void FromString(std::string_view text, CUIntArray& values);

    /// The integer part, the separator, and the fraction in units of 1/base, cut to a whole number of at least two digits:
    /// 2.5 to the base 60 with ":" is "2:30". Of a negative value both parts carry the sign.
    static CString ToBasedString(double value, int base, std::string_view separator);

    /// The value in the unit `unitNames[index]`, that is divided by `thresholds[index]`: "1.5 KB". Index -2 stands for
    /// the highest threshold at or under the value, -1 for the value as it is, in `unitName`. `%%` in a unit's name is
    /// one percent sign. Negative `decimals` mean six.
    /// @throws CInvalidArgException* for an index outside either array.
    static CString RebaseUnits(double value, std::string_view unitName, const CDoubleArray& thresholds,
                               const CStringArray& unitNames, int decimals = 0, int index = -2);
    /// The same with index -2, one added before rounding to the nearest whole number, and an "s" after the unit, both
    /// always: 2048 at the threshold 1024 is "3 KBs".
    /// @throws CInvalidArgException* when the unit's name is missing.
    static CString RebaseUnitsRoundUp(double value, std::string_view unitName, const CDoubleArray& thresholds,
                                      const CStringArray& unitNames);
    /// The value as a sum of units: "1 hour, 2 minutes, 5 seconds". Takes the highest threshold at or under what is
    /// left, time and again; a rest that is not zero, or the only part, is in the base unit. A count above 1 gets an
    /// "s" after its unit when `plural` is not zero. Counts are cut to whole numbers. Thresholds that are not above
    /// zero end the search, so it always ends; a value that is not finite is in the base unit.
    /// @throws CInvalidArgException* when a unit's name is missing.
    static CString ToMultibase(double value, std::string_view baseUnitName, const CDoubleArray& thresholds,
                               const CStringArray& unitNames, int plural = 1);

    // The user's locale, version resources, errors, identifiers, clipboard (core/StringHelperSystem.cpp)

    /// The currency symbol of the user; "$" when there is none, or none below 10 bytes. On Windows from the registry (value
    /// "sCurrency" of "Control Panel\International"), on Linux from the locale category LC_MONETARY.
    static CString GetLocalCurrency();
    /// The amount as the user's locale writes it; empty when it is not finite or takes 260 bytes or more. On Windows by the
    /// system's user locale, on Linux by LC_MONETARY.
    static CString InternationalizeCurrency(double amount);
    /// What the user puts between the items of a list; "," when the system has nothing below 4 bytes. Linux locales
    /// know none: there it is ";" where the comma is the decimal point, as in spreadsheets.
    static CString GetLocaleListSeperator();

    // Version resources of program files. On Linux no file has one: the results are 0 or empty.

    /// The first translation: language in the high 16 bits, code page in the low ones; 0 when there is none.
    static unsigned long GetLanguageCodepage(std::string_view file);
    /// A value of the first translation, such as "CompanyName"; empty when there is none.
    static CString GetVersionInfo(std::string_view file, std::string_view key);
    /// The value "FileVersion", as its author wrote it.
    static CString GetVersionString(std::string_view file);
    /// The version in numbers, "1.2.3.4"; empty when there is none.
    static CString GetFileVersionAsString(std::string_view file);

    /// The system's text for the error, on Windows with its line break; empty when there is none.
    static CString GetErrorMessage(unsigned long error);
    /// The text for the calling thread's last error (errno on Linux).
    static CString GetLastErrorString();

    /// A new identifier in registry form, upper case, "{01234567-89AB-4CDE-8F01-23456789ABCD}", without the braces when
    /// `braces` is 0. Empty when the system cannot give one.
    static CString GetNewGuid(int braces = 1);

    // The clipboard. A window may be null; formats are the system's numbers, 1 is plain text. On Linux there is none:
    // what is read is empty, what is written goes nowhere.

    /// The data up to its first zero byte; empty when the clipboard has none of that format or cannot be opened.
    static CString GetClipboard(HWND window, unsigned int format);
    /// Replaces what the clipboard holds. Does nothing when it cannot be opened.
    static void SetClipboard(HWND window, std::string_view text, unsigned int format);
    /// The clipboard's plain text as TextAsVbScript writes it, under the wait cursor; empty when there is none.
    static CString GetClipboardAsVbScript(HWND window, std::string_view variable, int escapePercent);
    /// Script source whose value is the text: quoted runs, each tab as chr(9), and chr(10) after every line, the last
    /// one too. With a variable's name, one statement a line that adds to it; without, one expression that ends in " +
    /// ". Any line break ends a line. With `escapePercent`, "%" is written as "\%".
    static CString TextAsVbScript(std::string_view text, std::string_view variable, int escapePercent);

    /// Obscures a text with a key from a passing glance, as hexadecimal pairs in upper case; the first is random, so the
    /// result differs each time. This is NOT cryptography: it keeps no secret from anyone who tries, and shows no
    /// tampering.
    static CString SimpleEncrypt(std::string_view text, std::string_view key);
    /// The way back, with the same key on any system. A coded text that is no whole number of hexadecimal pairs decodes
    /// to an empty text; a wrong key gives some other text.
    static CString SimpleDecrypt(std::string_view coded, std::string_view key);

    // Cutting at markers (core/StringHelperMarkers.cpp)
    //
    // Markers are matched case and all, but where a flag says otherwise, and by whole characters: half of a double-byte
    // one is no marker. An empty marker is found where the search starts. Members that return int return 1 if the marker
    // was found, else 0 and change nothing.
    //
    // A CString moves what it keeps to its front, which a walk through a long text by many calls pays for each time. A view
    // moves its ends instead: such a walk takes time linear in the text.

    /// Keeps what stands BEFORE the marker's first occurrence.
    static int StripBefore(CString& text, std::string_view marker);
    static int StripBefore(std::string_view& text, std::string_view marker);
    /// Keeps what stands AFTER the marker's first occurrence.
    static int StripAfter(CString& text, std::string_view marker);
    static int StripAfter(std::string_view& text, std::string_view marker);
    /// `head` gets what stands before the marker's first occurrence, `text` keeps what follows it.
    static int StripLeft(CString& text, std::string_view marker, CString& head);
    static int StripLeft(std::string_view& text, std::string_view marker, std::string_view& head);
    /// Removes the characters of the set from the start of the text.
    static void StripFromLeft(CString& text, std::string_view characters);
    /// The text up to the marker's first occurrence; all of it without one.
    static CString RemoveAfter(std::string_view text, std::string_view marker, int noCase = 0);
    /// What stands between the first start marker and the end marker that follows it, or the end of the source. Without a
    /// start marker the result is empty and the source is left alone. When the end marker was found and `consumeEnd` is not
    /// zero, the source keeps what follows the end marker; otherwise, when `consumeStart` is not zero, what follows the
    /// start marker.
    static CString GetStringBetween(CString& source, std::string_view startMarker, std::string_view endMarker,
                                    int consumeStart = 0, int consumeEnd = 1);
    static std::string_view GetStringBetween(std::string_view& source, std::string_view startMarker,
                                             std::string_view endMarker, int consumeStart = 0, int consumeEnd = 1);
    /// 1 if the start marker occurs and no end marker stands before its first occurrence or at it.
    static int IsStringInRange(std::string_view text, std::string_view startMarker, std::string_view endMarker);
    /// 1 if the word occurs with a space after it, or if its FIRST occurrence ends the text. What stands before the word is
    /// not looked at: "concat " holds the word "cat".
    static int FindWholeWord(std::string_view text, std::string_view word);

    // Finding and replacing (core/StringHelperReplace.cpp)

    /// The place in `text`, at or after `start`, where `find` stands when both are compared in upper case; -1 if nowhere.
    /// Only whole characters match. The empty text is found at `start`. Time grows with the way to the result, whatever
    /// the texts look like.
    static int FindNoCase(std::string_view text, std::string_view find) { return FindNoCase(text, find, 0); }
    static int FindNoCase(std::string_view text, std::string_view find, int start);

    /// Replaces occurrences found by FindNoCase from left to right; each search goes on one character after the place of
    /// the last one, so into the replacement and what has come to stand behind it. (An empty replacement thus keeps what
    /// follows the removed text from being removed next to it.) A replacement that holds `find` anywhere but at its start
    /// would never end: then each occurrence in the text is replaced once and the replacements are not searched. An empty
    /// `find` changes nothing.
    static void ReplaceNoCase(CString& text, std::string_view find, std::string_view replacement);

    /// Replaces all occurrences, case and all, pass after pass from left to right, until a pass finds none: two spaces
    /// replaced by one leave no two spaces anywhere. A replacement that holds `find` would never end: it gets one pass. One
    /// that is no shorter than `find` may go on for very long, or for ever ("ab" by "bbaa"): it ends where it stands when
    /// the passes after the first have written 2 MB and 16 times the text. An empty `find` changes nothing.
    ///
    /// Time grows with the text and, after the first pass, with the number of replacements times the length of both texts. In
    /// a double-byte code page each pass goes through the whole text, which counts as written.
    static void ReplaceAll(CString& text, std::string_view find, std::string_view replacement);

    /// Replaces what stands between each start marker and the next end marker, from left to right; both markers stay, and
    /// the search goes on at the end marker, which may thus be the next start marker. A start marker without an end marker
    /// after it is left alone; an empty start marker is found nowhere.
    static CString ReplaceBetween(std::string_view text, std::string_view startMarker, std::string_view endMarker,
                                  std::string_view replacement);

    /// The text in lines of at most `width` bytes, for display. It is trimmed; its own line ends stay. A longer line
    /// ends at the last space among its first `width` bytes, else behind as many whole characters as these hold, at
    /// least one. A rest that is no longer than `width`, line ends included, is not broken again. All line ends become
    /// CR LF. A width below 1 counts as 1.
    static CString MakeMultiLine(std::string_view text, int width);

    // Addresses and forms (core/StringHelperUrl.cpp)

    /// 0 for letters, digits and ! ' ( ) * - . / : _ ~, else 1.
    static int IsUnsafeUrlChar(char c);
    /// As a form sends it (application/x-www-form-urlencoded): a space as "+", every other unsafe byte as "%" and two
    /// lower-case hexadecimal digits. "a,b & c" becomes "a%2cb+%26+c".
    static CString Escape(std::string_view text);
    /// A path as part of an address (RFC 3986): letters, digits and - . _ ~ / stay, every other byte becomes "%" and
    /// two upper-case hexadecimal digits. "a b/c#1" becomes "a%20b/c%231".
    static CString EscapePath(std::string_view path);
    /// The inverse of Escape, in place. A "%" without two hexadecimal digits becomes "?": when the first is missing the
    /// character in its place goes, when the second is missing both go; at the end of the text what is left of the
    /// escape goes.
    static void Unescape(CString& text);
    /// Decodes "%" and two hexadecimal digits, from left to right; "+" stays. Each sequence is decoded wherever it
    /// stands in the text at that moment, and the walk goes on at the position where it was found: what decoding puts
    /// together there is decoded in turn, so "%2541" becomes "A". A "%" without two hexadecimal digits stays.
    static CString UnEscapeUrl(std::string_view text);
    /// Splits a form's fields, "name=value&name=value", unescapes both halves and appends them to the arrays. The first "="
    /// parts them; fields without one are left out.
    static void ParseRawHttpParams(std::string_view text, CStringArray& names, CStringArray& values);
    /// The path of a file address: "file:" and the slashes after it are removed, in any case of ASCII; a text without "file:" keeps
    /// its slashes. When `unescape` is not zero the text is decoded by UnEscapeUrl first; when `backslashes` is not zero
    /// every "/" becomes "\". If no file or folder of that name (up to the first "#") exists, but one with "\" before it
    /// does, that is put before it. The part from "#" on stays in every case.
    static CString RemoveFileProtocol(std::string_view text, int unescape = 1, int backslashes = 1);
};
