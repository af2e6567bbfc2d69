#include "qvcommon/framework/Format.h"

#include <cstdio>

#include "platform/Ascii.h"

namespace qv {
namespace {

// Returns the value's bits as used by the conversion: a signed conversion extends the sign from the value's own width,
// the others use only the bits that the value has.
long long SignedValue(const FormatArg& arg) {
    const int spare = 64 - 8 * arg.size;
    return static_cast<long long>(arg.integer << spare) >> spare;
}

unsigned long long UnsignedValue(const FormatArg& arg) {
    const int spare = 64 - 8 * arg.size;
    return (arg.integer << spare) >> spare;
}

template <class Value>
void AppendNumber(std::string& out, const std::string& spec, Value value) {
    char small[128];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    const int length = std::snprintf(small, sizeof small, spec.c_str(), value);
    if (length < 0) return;
    if (static_cast<std::size_t>(length) < sizeof small) {
        out.append(small, static_cast<std::size_t>(length));
        return;
    }
    const std::size_t before = out.size();
    out.resize(before + static_cast<std::size_t>(length) + 1);
    std::snprintf(out.data() + before, static_cast<std::size_t>(length) + 1, spec.c_str(), value);
#pragma GCC diagnostic pop
    out.pop_back();
}

struct Layout {
    bool left = false;
    std::size_t width = 0;
    std::size_t precision = std::string::npos;
};

Layout ReadLayout(std::string_view spec) {
    Layout layout;
    std::size_t i = 1;
    auto number = [&] {
        std::size_t n = 0;
        for (; i < spec.size() && qv::ascii::IsDigit(spec[i]); ++i)
            if (n < 100000000) n = n * 10 + static_cast<std::size_t>(spec[i] - '0');
        return n;
    };
    for (; i < spec.size() && std::string_view("-+ #0").find(spec[i]) != std::string_view::npos; ++i)
        layout.left |= spec[i] == '-';
    layout.width = number();
    if (i < spec.size() && spec[i] == '.') {
        ++i;
        layout.precision = number();
    }
    return layout;
}

void AppendText(std::string& out, std::string_view spec, std::string_view text) {
    const Layout layout = ReadLayout(spec);
    text = text.substr(0, layout.precision);
    const std::size_t fill = layout.width > text.size() ? layout.width - text.size() : 0;
    if (!layout.left) out.append(fill, ' ');
    out.append(text);
    if (layout.left) out.append(fill, ' ');
}

// Returns flags, width and precision with each star replaced by its value. A negative precision is ignored, as in C.
std::string ResolveStars(std::string_view spec, const FormatArg*& arg) {
    std::string resolved;
    for (char c : spec) {
        if (c != '*') {
            resolved += c;
            continue;
        }
        const long long value = SignedValue(*arg++);
        if (value < 0 && !resolved.empty() && resolved.back() == '.')
            resolved.pop_back();
        else
            resolved += std::to_string(value);
    }
    return resolved;
}

void AppendValue(std::string& out, const std::string& spec, char conversion, const FormatArg& arg) {
    switch (conversion) {
        case 's': return AppendText(out, spec, arg.text);
        case 'c': {
            const char c = static_cast<char>(arg.integer);
            return AppendText(out, spec.substr(0, spec.find('.')), std::string_view(&c, 1));
        }
        case 'd':
        case 'i': return AppendNumber(out, spec + "lld", SignedValue(arg));
        case 'o':
        case 'u':
        case 'x':
        case 'X': return AppendNumber(out, spec + "ll" + conversion, UnsignedValue(arg));
        case 'p': {
            const auto address = arg.kind == FormatArg::Kind::Text ? reinterpret_cast<std::uintptr_t>(arg.text.data())
                                                                   : static_cast<std::uintptr_t>(arg.integer);
            return AppendNumber(out, spec + "p", reinterpret_cast<const void*>(address));
        }
        default: return AppendNumber(out, spec + conversion, arg.real);
    }
}

}  // namespace

void AppendFormat(std::string& out, std::string_view format, const FormatArg* args, std::size_t count) {
    const FormatArg* const end = args + count;
    std::size_t size = out.size() + format.size();
    for (const FormatArg* arg = args; arg < end; ++arg) size += arg->text.size();
    out.reserve(size);  // a single allocation, except for long numbers and widths
    for (std::size_t i = 0; i < format.size();) {
        const std::size_t percent = format.find('%', i);
        out.append(format.substr(i, percent - i));
        if (percent == format.npos) return;
        const FormatSpec spec = ReadFormatSpec(format, percent);
        const std::string_view flags = format.substr(percent, spec.flagsEnd - percent);
        i = spec.end;
        if (spec.conversion == '%') {
            out += '%';
        } else if (spec.conversion == 's' && flags.size() == 1 && args < end) {
            out.append((args++)->text);
        } else if (end - args > spec.stars) {
            const std::string resolved = spec.stars ? ResolveStars(flags, args) : std::string(flags);
            AppendValue(out, resolved, spec.conversion, *args++);
        }
    }
}

}  // namespace qv
