#pragma once

/// @file Rewriting the marked regions of a string: the start marker and the end marker of each region are replaced, and
/// its inner text is passed through a member that derived classes override.
///
/// Not thread-safe. The order of the virtual members is part of the interface.

#include "qvcommon/framework/Collections.h"

/// The base leaves the inner texts unchanged. Copies have the same markers, replacements and case rule.
class QVCOMMON_API CEscapedStringReplacer {
public:
    /// Starts with empty markers and replacements; markers are case-insensitive.
    CEscapedStringReplacer() = default;
    CEscapedStringReplacer(const CEscapedStringReplacer&) = default;
    CEscapedStringReplacer& operator=(const CEscapedStringReplacer&) = default;
    virtual ~CEscapedStringReplacer();

    /// Returns the text with its regions rewritten, from left to right.
    ///
    /// The search for the next start marker begins at the end marker, not after it: if both markers are the same, each
    /// end marker is the next start marker, and "%" on both sides makes regions of b and c in "a%b%c%d". A start marker
    /// without an end marker is still replaced, and the text after it is kept. An empty start marker never matches; an
    /// empty end marker matches right after the start marker. O(n) in the text and the result. GetEscapedText may change
    /// the string that the text is in, such as an element of the array of CGetEscapedStrings.
    virtual CString ReplaceEscapes(std::string_view text);

    /// Non-zero: markers are case-sensitive.
    virtual void SetCaseSentitive(int caseSensitive);

    /// Each: Returns the marker before a region, or the one after it, or its replacement. A virtual call each.
    virtual CString GetStartFind() const;
    virtual CString GetStartReplace() const;
    virtual CString GetEndFind() const;
    virtual CString GetEndReplace() const;
    /// Each: Sets the value returned by the getter of that name.
    virtual void SetStartFind(std::string_view text);
    virtual void SetStartReplace(std::string_view text);
    virtual void SetEndFind(std::string_view text);
    virtual void SetEndReplace(std::string_view text);

protected:
    /// Returns the replacement of a region's inner text: the inner text itself. Called once per region, in order. It
    /// may call the setters; new replacements take effect at once, new markers and a new case rule with the next
    /// ReplaceEscapes.
    virtual CString GetEscapedText(std::string_view inner);

private:
    CString m_startFind, m_startReplace, m_endFind, m_endReplace;
    int m_caseSensitive = 0;
};

/// Replaces every tag, from "<" to the next ">", by a space.
class QVCOMMON_API CStripTag : public CEscapedStringReplacer {
public:
    CStripTag();

protected:
    /// Returns a single space.
    CString GetEscapedText(std::string_view inner) override;
};

/// Extracts the inner texts, markers included, and appends them to the caller's array. The caller sets the markers and
/// owns the array, which must outlive this object.
class QVCOMMON_API CGetEscapedStrings : public CEscapedStringReplacer {
public:
    /// Stores a reference to the array.
    explicit CGetEscapedStrings(CStringArray& texts) : m_texts(texts) {}

protected:
    CString GetEscapedText(std::string_view inner) override;

private:
    CStringArray& m_texts;
};
