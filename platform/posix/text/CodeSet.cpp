#include "platform/posix/text/CodeSet.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <list>
#include <mutex>
#include <optional>

#include "platform/Error.h"
#include "platform/Utf8.h"

namespace qv::platform {
namespace {

constexpr std::size_t kLongestCharacter = 4;

// One direction between a set and UTF-32 in native byte order.
class Converter {
public:
    Converter(const char* to, const char* from) : m_handle(::iconv_open(to, from)) {}
    ~Converter() {
        if (IsOpen()) ::iconv_close(m_handle);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    bool IsOpen() const { return m_handle != reinterpret_cast<iconv_t>(-1); }

    enum class Outcome { Whole, Incomplete, Invalid };

    /// Converts one character and stores the resulting bytes in `out` and `outSize`.
    Outcome Convert(const char* in, std::size_t inSize, char* out, std::size_t& outSize) {
        char* input = const_cast<char*>(in);
        const std::size_t room = outSize;
        std::size_t left = room;
        const unsigned long errorBefore = LastError();
        ::iconv(m_handle, nullptr, nullptr, nullptr, nullptr);
        const std::size_t inexact = ::iconv(m_handle, &input, &inSize, &out, &left);
        const bool failed = inexact == static_cast<std::size_t>(-1), cut = failed && LastError() == EINVAL;
        SetLastError(errorBefore);  // restores the caller's error: examining a text must not change it
        outSize = room - left;
        if (inexact == 0 && outSize > 0) return Outcome::Whole;
        return cut ? Outcome::Incomplete : Outcome::Invalid;
    }

private:
    iconv_t m_handle;
};

constexpr const char* kUtf32 = "UTF-32LE";

// Converters are stateful, so each thread has its own pair.
struct Converters {
    explicit Converters(const std::string& name) : set(name), read(kUtf32, name.c_str()), write(name.c_str(), kUtf32) {}

    std::string set;
    Converter read, write;
};

Converters& ConvertersOf(const std::string& name) {
    thread_local std::optional<Converters> converters;
    if (!converters || converters->set != name) converters.emplace(name);
    return *converters;
}

Converter::Outcome ReadCode(Converter& converter, std::string_view bytes, char32_t& code) {
    std::size_t size = sizeof code;
    char32_t read = 0;
    const auto outcome = converter.Convert(bytes.data(), bytes.size(), reinterpret_cast<char*>(&read), size);
    if (outcome == Converter::Outcome::Whole) code = read;
    return outcome;
}

}  // namespace

CodeSet::CodeSet(std::string_view name) : m_name(name) {}

const CodeSet& CodeSet::Utf8() {
    static const CodeSet* const set = [] {
        auto* const utf8 = new CodeSet("UTF-8");
        utf8->m_page = CodePage::Utf8;
        return utf8;
    }();
    return *set;
}

const CodeSet* CodeSet::Named(std::string_view name) {
    if (name == Utf8().Name()) return &Utf8();
    static std::mutex& mutex = *new std::mutex;
    static std::list<CodeSet>& known = *new std::list<CodeSet>;
    const std::scoped_lock lock(mutex);
    const auto found = std::find_if(known.begin(), known.end(), [&](const CodeSet& set) { return set.m_name == name; });
    if (found != known.end()) return &*found;
    CodeSet set(name);
    if (!set.ReadBytes()) return nullptr;
    return &known.emplace_back(std::move(set));
}

bool CodeSet::ReadBytes() {
    Converters& converters = ConvertersOf(m_name);
    if (!converters.read.IsOpen() || !converters.write.IsOpen()) return false;
    for (std::size_t byte = 0; byte < m_codes.size(); ++byte) {
        const char c = static_cast<char>(byte);
        char32_t& code = m_codes[byte];
        switch (ReadCode(converters.read, {&c, 1}, code)) {
            case Converter::Outcome::Whole: break;
            case Converter::Outcome::Invalid: code = kNone; break;
            case Converter::Outcome::Incomplete: code = kLead; m_page = CodePage::DoubleByte;
        }
    }
    for (std::size_t byte = 0x80; byte < m_codes.size(); ++byte) {
        // An unassigned byte of a single-byte page is an unnamed character with the same number.
        if (m_codes[byte] == kNone && m_page == CodePage::SingleByte) m_codes[byte] = static_cast<char32_t>(byte);
        if (m_codes[byte] < kLead) m_bytes.emplace_back(m_codes[byte], static_cast<char>(byte));
    }
    std::sort(m_bytes.begin(), m_bytes.end());
    return true;
}

bool CodeSet::HoldsAscii() const {
    if (m_page == CodePage::Utf8) return true;
    for (char32_t code = 0; code < 0x80; ++code)
        if (m_codes[code] != code) return false;
    return true;
}

CodeSet::Character CodeSet::Read(std::string_view text, std::size_t position) const {
    if (m_page == CodePage::Utf8) {
        const Utf8Character c = DecodeUtf8(text, position);
        return {c.code, c.length, c.wellFormed};
    }
    const auto byte = static_cast<unsigned char>(text[position]);
    const char32_t code = m_codes[byte];
    if (code == kLead) return ReadLong(text, position);
    if (code == kNone) return {byte, 1, false};
    return {code, 1, true};
}

CodeSet::Character CodeSet::ReadLong(std::string_view text, std::size_t position) const {
    Converter& converter = ConvertersOf(m_name).read;
    const std::size_t most = std::min(kLongestCharacter, text.size() - position);
    for (std::size_t length = 2; length <= most; ++length) {
        char32_t code = 0;
        const auto outcome = ReadCode(converter, text.substr(position, length), code);
        if (outcome == Converter::Outcome::Whole) return {code, length, true};
        if (outcome == Converter::Outcome::Invalid) break;
    }
    return {static_cast<unsigned char>(text[position]), 1, false};
}

bool CodeSet::Append(std::string& out, char32_t code) const {
    if (m_page == CodePage::Utf8) {
        AppendUtf8(out, code);
        return true;
    }
    if (code < 0x80) {
        out += static_cast<char>(code);
        return true;
    }
    const auto found = std::lower_bound(m_bytes.begin(), m_bytes.end(), std::pair(code, '\x80'));
    if (found == m_bytes.end() || found->first != code) return m_page == CodePage::DoubleByte && AppendLong(out, code);
    out += found->second;
    return true;
}

bool CodeSet::AppendLong(std::string& out, char32_t code) const {
    char bytes[2 * kLongestCharacter];
    std::size_t size = sizeof bytes;
    const auto in = reinterpret_cast<const char*>(&code);
    if (ConvertersOf(m_name).write.Convert(in, sizeof code, bytes, size) != Converter::Outcome::Whole) return false;
    out.append(bytes, size);
    return true;
}

}  // namespace qv::platform
