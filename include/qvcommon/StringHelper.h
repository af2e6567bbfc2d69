#pragma once

/// @file The text toolbox. All members are static and free of state, safe from any thread as long as no thread changes the
/// C locale meanwhile.
///
/// Lengths are byte counts, positions byte indexes from 0, and -1 means "not found". A `caseSensitive` flag that is zero
/// lets texts match that differ in case only; a `noCase` flag that is NOT zero does the same. Text arguments may hold zero
/// bytes. Memory running out raises std::bad_alloc; nothing else is raised but where a member says so.

#include "qvcommon/framework/Collections.h"

class QVCOMMON_API CStringHelper {
public:
    CStringHelper() = default;
    virtual ~CStringHelper() = default;

    // Comparing and searching (core/StringHelperCompare.cpp)

    // Case and white space (core/StringHelperCase.cpp)

    // Lists of texts (core/StringHelperLists.cpp, core/StringHelperDuplicates.cpp)
    //
    // An array that an operation writes may also be one that it reads, and a text argument may be one of its elements; two
    // arrays that it writes have to be different ones.

    /// Appends the pieces between the occurrences of the separator, and the one after the last; empty pieces only when
    /// `keepEmpty` is not zero. "a,,b" at "," gives "a", "b" or "a", "", "b". The separator is found byte for byte, left to
    /// right; an empty one occurs nowhere, so the text is one piece.
    static void SplitString(std::string_view text, std::string_view separator, CStringArray& pieces, int keepEmpty);
    /// Appends the pieces between any of the given characters, trimmed, those that are not empty then.
    static void SplitCharsString(std::string_view text, std::string_view separators, CStringArray& pieces);

    /// Appends the elements 0 to `lastIndex` to `out`, the separator between each two that are written. Empty elements are
    /// written only when `keepEmpty` is not zero. -1, and any index past the end, means all elements; other negative
    /// ones mean none.
    static void MakeString(const CStringArray& texts, std::string_view separator, CString& out, int lastIndex,
                           int keepEmpty);
    static CString MakeString(const CStringArray& texts, std::string_view separator, int lastIndex, int keepEmpty);
    /// A list for readers: the elements with the separator between them, or " and " between the last two when `useAnd` is
    /// not zero. With ", ": "a, b and c".
    static CString MakeList(const CStringArray& texts, int useAnd, std::string_view separator);

    /// The elements joined by ","; a comma inside an element is written as the five characters \0x2C.
    static CString StringArrayToString(const CStringArray& texts);
    /// The way back. Clears the array first. Empty elements are lost, and an element that held the five characters
    /// themselves comes back with a comma.
    static void StringToStringArray(std::string_view text, CStringArray& texts);

    /// Reads one record of comma-separated values. Clears the array first. A quote opens a quoted part wherever it stands;
    /// in it, two quotes are one, and a single one closes it. A comma outside ends the field. All other bytes are kept, blanks
    /// and line ends too. A quoted part that is never closed reaches to the end. An empty text is one empty field.
    static void CsvToArray(std::string_view text, CStringArray& fields);
    /// One record of comma-separated values, no line end. Fields with a quote or a comma are quoted, others written as they
    /// are: CsvToArray gives any array but the empty one back.
    static CString ArrayToCsv(const CStringArray& fields);

    /// Appends each zero-terminated text of the buffer up to the first empty one. A null buffer holds none. There is no size to
    /// check: the caller vouches for the two zero bytes at the end.
    static void FromMultiSz(const char* buffer, CStringArray& texts);
    /// The bytes that ToMultiSz needs to write every element whole.
    static unsigned long CalculateMultiSzBufferSize(const CStringArray& texts);
    /// Writes the elements, each with a zero byte, and a final zero byte, never more than `size` bytes. The element that does not
    /// fit is cut, those after it are left out. A size below 3 holds no element: all its bytes become zero.
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

    // The following take time in line with the size of their arrays, whatever these hold.

    /// Keeps the first of equal texts, in order.
    static void RemoveDuplicates(CStringArray& texts, int noCase);
    static void RemoveDuplicates(CDWordArray& values);
    /// Keeps the first of equal pairs (a[i], b[i]), in order. Elements of b past the end of a belong to no pair and go.
    /// @throws CInvalidArgException* when b is shorter than a; both are unchanged then.
    static void RemoveDuplicates(CStringArray& a, CStringArray& b, int noCase);
    /// Removes every element that equals the text (any of the texts), and returns how many.
    static int RemoveInstancesOf(CStringArray& texts, std::string_view text, int caseSensitive);
    static int RemoveInstancesOf(CStringArray& texts, const CStringArray& unwanted, int caseSensitive);
    /// Leaves each name once, where it stood first, case-sensitively, with the sum of its values, added in their order.
    /// Values past the end of the names belong to none and go.
    /// @throws CInvalidArgException* when there are fewer values than names; both are unchanged then.
    static void CollateValues(CStringArray& names, CDoubleArray& values);

    // Sorting (core/StringHelperSort.cpp)
    //
    // By the collation of the current locale, or by the length in bytes (BySize); the other way round when `descending` is
    // not zero. Texts that sort alike stay in the order they had. Companions go with their texts, whatever their values:
    // a pointer is never looked at, and none is too wide. Companions past the end of the texts stay where they are. When
    // there are fewer companions than texts, CInvalidArgException* is raised and nothing has changed.

    static void SortStringArray(CStringArray& texts, int descending);
    static void SortStringList(CStringList& texts, int descending);
    static void SortStringArrayBySize(CStringArray& texts, int descending);

    static void SortStringArray(CStringArray& texts, CPtrArray& companions, int descending);
    static void SortStringArrayBySize(CStringArray& texts, CPtrArray& companions, int descending);
    static void SortStringArray(CStringArray& texts, CStringArray& companions, int descending);
    static void SortStringArrayBySize(CStringArray& texts, CStringArray& companions, int descending);
    static void SortStringArray(CStringArray& texts, CStringArray& first, CStringArray& second, int descending);
    static void SortStringArray(CStringArray& texts, CStringArray& first, CUIntArray& second, int descending);
    /// Ascending.
    static void SortStringArray(CStringArray& texts, CDoubleArray& companions);
    static void SortStringArray(CStringArray& texts, CUIntArray& companions);

    /// Sorts, and fills `indexes` with the index that each element had before.
    static void IndexSortCStringArray(CStringArray& texts, CDWordArray& indexes, int descending);
    static void IndexSortDwordArray(CDWordArray& values, CDWordArray& indexes, int descending);

    // Numbers as text (core/StringHelperNumbers.cpp)
    //
    // The decimal point is that of the C locale in force, as printf writes it.

    /// As printf's %g.
    static CString ToString(double value);
    /// The values joined by ",", each as a signed number: 4294967295 is "-1".
    static CString ToString(const CUIntArray& values);
    /// Appends the numbers of a list with "," between them; empty pieces count for nothing. Each is read as atoi does: white
    /// space, a sign, digits, up to the first byte that is none of these. Both "-1" and "4294967295" give 4294967295: a
    /// number too large is taken modulo 2 to the power 32.
    static void FromString(std::string_view text, CUIntArray& values);

    /// The integer part, the separator, and the fraction in units of 1/base, cut to a whole number of at least two digits:
    /// 2.5 to the base 60 with ":" is "2:30". Of a negative value both parts carry the sign.
    static CString ToBasedString(double value, int base, std::string_view separator);

    /// The value in the unit `unitNames[index]`, that is divided by `thresholds[index]`: "1.5 KB". Index -2 stands for the highest
    /// threshold at or under the value, -1 for the value as it is, in `unitName`. `%%` in a unit's name is one percent sign.
    /// Negative `decimals` mean six.
    /// @throws CInvalidArgException* for an index outside either array.
    static CString RebaseUnits(double value, std::string_view unitName, const CDoubleArray& thresholds,
                               const CStringArray& unitNames, int decimals, int index);
    /// The same with index -2, one added before rounding to the nearest whole number, and an "s" after the unit, both always:
    /// 2048 at the threshold 1024 is "3 KBs".
    /// @throws CInvalidArgException* when the unit's name is missing.
    static CString RebaseUnitsRoundUp(double value, std::string_view unitName, const CDoubleArray& thresholds,
                                      const CStringArray& unitNames);
    /// The value as a sum of units: "1 hour, 2 minutes, 5 seconds". Takes the highest threshold at or under what is left, time
    /// and again; a rest that is not zero, or the only part, is in the base unit. A count above 1 gets an "s" after its unit
    /// when `plural` is not zero. Counts are cut to whole numbers. Thresholds that are not above zero end the search, so
    /// it always ends; a value that is not finite is in the base unit.
    /// @throws CInvalidArgException* when a unit's name is missing.
    static CString ToMultibase(double value, std::string_view baseUnitName, const CDoubleArray& thresholds,
                               const CStringArray& unitNames, int plural);

    // The user's locale, version resources, errors, identifiers, clipboard (core/StringHelperSystem.cpp)

    /// The currency symbol of the user; "$" when there is none, or none below 10 bytes. On Windows from the registry (value
    /// "sCurrency" of "Control Panel\International"), on Linux from the locale category LC_MONETARY.
    static CString GetLocalCurrency();
    /// The amount as the user's locale writes it; empty when it is not finite or takes 260 bytes or more. On Windows by the
    /// system's user locale, on Linux by LC_MONETARY.
    static CString InternationalizeCurrency(double amount);
    /// What the user puts between the items of a list; "," when the system has nothing below 4 bytes. Linux locales know none:
    /// there it is ";" where the comma is the decimal point, as in spreadsheets.
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

    /// A new identifier in registry form, upper case, "{01234567-89AB-4CDE-8F01-23456789ABCD}", without the braces when `braces`
    /// is 0. Empty when the system cannot give one.
    static CString GetNewGuid(int braces);

    // The clipboard. A window may be null; formats are the system's numbers, 1 is plain text. On Linux there is none: what is read
    // is empty, what is written goes nowhere.

    /// The data up to its first zero byte; empty when the clipboard has none of that format or cannot be opened.
    static CString GetClipboard(HWND window, unsigned int format);
    /// Replaces what the clipboard holds. Does nothing when it cannot be opened.
    static void SetClipboard(HWND window, std::string_view text, unsigned int format);
    /// The clipboard's plain text as TextAsVbScript writes it, under the wait cursor; empty when there is none.
    static CString GetClipboardAsVbScript(HWND window, std::string_view variable, int escapePercent);
    /// Script source whose value is the text: quoted runs, each tab as chr(9), and chr(10) after every line, the last one too. With a
    /// variable's name, one statement a line that adds to it; without, one expression that ends in " + ". Any line break
    /// ends a line. With `escapePercent`, "%" is written as "\%".
    static CString TextAsVbScript(std::string_view text, std::string_view variable, int escapePercent);

    /// Obscures a text with a key from a passing glance, as hexadecimal pairs in upper case; the first is random, so the
    /// result differs each time. This is NOT cryptography: it keeps no secret from anyone who tries, and shows no tampering.
    static CString SimpleEncrypt(std::string_view text, std::string_view key);
    /// The way back, with the same key on any system. A coded text that is no whole number of hexadecimal pairs decodes to an empty
    /// text; a wrong key gives some other text.
    static CString SimpleDecrypt(std::string_view coded, std::string_view key);

    // Cutting at markers (core/StringHelperMarkers.cpp)

    // Finding and replacing (core/StringHelperReplace.cpp)

    // Addresses and forms (core/StringHelperUrl.cpp)
};
