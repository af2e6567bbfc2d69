#pragma once

/// @file printf-style formatting checked at compile time: each conversion against the type of its value. A string value
/// may be a CString; it is passed by length, never as an object through a C ellipsis.

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "qvcommon/Export.h"
#include "qvcommon/framework/Exception.h"

namespace qv {

/// A value to be formatted. Strings are referenced, not copied.
struct FormatArg {
    /// The conversions that the value supports.
    enum class Kind : unsigned char { Integer, Real, Text, Pointer };

    Kind kind;                   ///< determines which of the members are valid
    unsigned char size = 0;      ///< of an integer, in bytes
    std::uint64_t integer = 0;   ///< the value's bits, sign-extended if its type is signed; a pointer's address
    double real = 0;             ///< of a floating-point value
    std::string_view text = {};  ///< of a string; must outlive this object
};

/// Returns the kind of a type's values. Does not compile for a type that printf cannot format.
template <class T>
constexpr FormatArg::Kind FormatKind() {
    using D = std::remove_cvref_t<T>;
    if constexpr (std::is_integral_v<D> || std::is_enum_v<D>)
        return FormatArg::Kind::Integer;
    else if constexpr (std::is_floating_point_v<D>)
        return FormatArg::Kind::Real;
    else if constexpr (std::is_convertible_v<const D&, std::string_view> ||
                       std::is_convertible_v<const D&, const char*>)
        return FormatArg::Kind::Text;
    else {
        static_assert(std::is_pointer_v<D>, "a value that printf cannot format");
        return FormatArg::Kind::Pointer;
    }
}

/// Returns the value as an argument. A null string is "(null)".
template <class T>
FormatArg MakeFormatArg(const T& value) {
    constexpr auto kind = FormatKind<T>();
    if constexpr (kind == FormatArg::Kind::Integer)
        return {.kind = kind, .size = sizeof(T), .integer = static_cast<std::uint64_t>(value)};
    else if constexpr (kind == FormatArg::Kind::Real)
        return {.kind = kind, .real = static_cast<double>(value)};
    else if constexpr (std::is_pointer_v<T> && kind == FormatArg::Kind::Text)
        return {.kind = kind, .text = value ? std::string_view(value) : std::string_view("(null)")};
    else if constexpr (kind == FormatArg::Kind::Text)
        return {.kind = kind, .text = static_cast<std::string_view>(value)};
    else
        return {.kind = kind, .integer = reinterpret_cast<std::uintptr_t>(value)};
}

/// One conversion of a format: its position and the value that it takes.
struct FormatSpec {
    std::size_t end = 0;       ///< position after the conversion
    std::size_t flagsEnd = 0;  ///< flags, width and precision are the bytes from the percent sign up to here
    char conversion = 0;       ///< '%' for a literal percent sign, 0 for an unknown conversion
    int stars = 0;             ///< number of values for width and precision

    /// Returns whether the conversion accepts a value of the kind.
    constexpr bool Takes(FormatArg::Kind kind) const {
        constexpr std::string_view integers = "diouxXc", reals = "eEfFgGaA";
        if (conversion == 's') return kind == FormatArg::Kind::Text;
        if (conversion == 'p') return kind == FormatArg::Kind::Pointer || kind == FormatArg::Kind::Text;
        if (integers.find(conversion) != integers.npos) return kind == FormatArg::Kind::Integer;
        return reals.find(conversion) != reals.npos && kind == FormatArg::Kind::Real;
    }
};

/// Parses the conversion whose percent sign is at `position`. Length modifiers are accepted and ignored: the value's
/// own type is used.
constexpr FormatSpec ReadFormatSpec(std::string_view format, std::size_t position) {
    constexpr std::string_view flags = "-+ #0", digits = "0123456789", lengths = "hlLqjztIw",
                               known = "diouxXceEfFgGaAsp%";
    FormatSpec spec;
    std::size_t i = position + 1;
    auto at = [&](std::string_view set) { return i < format.size() && set.find(format[i]) != set.npos; };
    auto number = [&] {
        if (at("*")) {
            ++spec.stars;
            ++i;
        } else {
            while (at(digits)) ++i;
        }
    };
    while (at(flags)) ++i;
    number();
    if (at(".")) {
        ++i;
        number();
    }
    spec.flagsEnd = i;
    const bool wide = at("I");
    while (at(lengths)) ++i;
    if (wide)
        while (at("0123456789")) ++i;  // I64 and I32, as in the Windows run time
    if (at(known)) spec.conversion = format[i++];
    spec.end = i;
    return spec;
}

/// Returns true if every conversion of the format has a value of its kind and every value is used.
constexpr bool FormatFits(std::string_view format, const FormatArg::Kind* kinds, std::size_t count) {
    std::size_t used = 0;
    for (std::size_t i = 0; i < format.size();) {
        if (format[i] != '%') {
            ++i;
            continue;
        }
        const FormatSpec spec = ReadFormatSpec(format, i);
        i = spec.end;
        if (spec.conversion == '%') continue;
        for (int star = 0; star < spec.stars; ++star)
            if (used >= count || kinds[used++] != FormatArg::Kind::Integer) return false;
        if (used >= count || !spec.Takes(kinds[used++])) return false;
    }
    return used == count;
}

/// A format that is known only at run time: `Format(qv::RuntimeFormat{text}, value)`. It is checked then.
struct RuntimeFormat {
    std::string_view text;  ///< must outlive this object
};

/// A format string that is known to fit values of types A.
template <class... A>
class FormatText {
public:
    /// Does not compile if the format does not fit its values.
    template <class S>
    requires std::convertible_to<const S&, std::string_view>
    consteval FormatText(const S& text) : m_text(text) {
        if (!Fits()) throw "the format does not fit its values";
    }

    /// @throws CInvalidArgException* if the format does not fit its values.
    FormatText(RuntimeFormat format) : m_text(format.text) {
        if (!Fits()) AfxThrowInvalidArgException();
    }

    /// The format.
    constexpr operator std::string_view() const { return m_text; }

private:
    constexpr bool Fits() const {
        constexpr FormatArg::Kind kinds[] = {FormatKind<A>()..., FormatArg::Kind::Integer};
        return FormatFits(m_text, kinds, sizeof...(A));
    }

    std::string_view m_text;
};

/// Appends the formatted text to `out`. The values must fit the format.
QVCOMMON_API void QVCOMMON_CALL AppendFormat(std::string& out, std::string_view format, const FormatArg* args,
                                             std::size_t count);

}  // namespace qv
