#pragma once

#include <string_view>
#include <vector>

#include "platform/Ascii.h"
#include "platform/DateText.h"

namespace qv {

using ascii::IsDigit;

/// A number in a date, as written.
struct DateNumber {
    int value = 0;
    int digits = 0;

    bool MustBeYear() const { return digits > 2; }
    int AsYear() const {
        if (MustBeYear()) return value;
        return value < 30 ? 2000 + value : 1900 + value;
    }
};

/// The remaining text, consumed from the front.
class DateCursor {
public:
    explicit DateCursor(std::string_view text) : m_rest(text) {}

    bool AtEnd() const { return m_rest.empty(); }
    char Next() const { return AtEnd() ? '\0' : m_rest[0]; }
    bool Take(char c) { return Next() == c && !AtEnd() && Skip(1); }
    bool Skip(std::size_t count) {
        m_rest.remove_prefix(count);
        return true;
    }
    void SkipBlanks() { m_rest = ascii::TrimmedLeft(m_rest, ascii::IsBlank); }

    /// Consumes exactly that many digits.
    bool TakeDigits(int count, int& value) {
        value = 0;
        for (int i = 0; i < count; ++i) {
            if (!IsDigit(Next())) return false;
            value = value * 10 + (Next() - '0');
            Skip(1);
        }
        return true;
    }

    /// Consumes all leading digits; returns false if the number of digits is 0 or more than a year has.
    bool TakeNumber(DateNumber& number) {
        for (number = {}; IsDigit(Next()); Skip(1)) {
            if (++number.digits > 4) return false;
            number.value = number.value * 10 + (Next() - '0');
        }
        return number.digits > 0;
    }

    /// Consumes the longest of the words that the text starts with; the first of equal ones.
    const platform::DateWord* TakeWord(const std::vector<platform::DateWord>& words) {
        const platform::DateWord* longest = nullptr;
        for (const platform::DateWord& word : words)
            if ((!longest || word.text.size() > longest->text.size()) && m_rest.starts_with(word.text)) longest = &word;
        if (longest) Skip(longest->text.size());
        return longest;
    }

private:
    std::string_view m_rest;
};

}  // namespace qv
