#include "xml/dom/Path.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "xml/dom/Characters.h"

namespace qv::dom {
namespace {

constexpr std::size_t kLongest = 1 << 16;
constexpr std::size_t kDeepest = 64;

using ascii::IsDigit;

// The functions and node tests of XPath 1.0. An evaluator may report unknown ones where they go unnoticed.
bool IsFunction(std::string_view name) {
    constexpr std::array functions{"boolean",
                                   "ceiling",
                                   "comment",
                                   "concat",
                                   "contains",
                                   "count",
                                   "false",
                                   "floor",
                                   "id",
                                   "lang",
                                   "last",
                                   "local-name",
                                   "name",
                                   "namespace-uri",
                                   "node",
                                   "normalize-space",
                                   "not",
                                   "number",
                                   "position",
                                   "processing-instruction",
                                   "round",
                                   "starts-with",
                                   "string",
                                   "string-length",
                                   "substring",
                                   "substring-after",
                                   "substring-before",
                                   "sum",
                                   "text",
                                   "translate",
                                   "true"};
    return std::find(functions.begin(), functions.end(), name) != functions.end();
}

// Returns the end of the name at `from`, including a prefix; `from` itself if there is no name.
std::size_t EndOfName(std::string_view text, std::size_t from) {
    std::size_t end = from;
    for (int part = 0; part < 2; ++part) {
        if (end == text.size() || !StartsName(text[end])) return from;
        while (end < text.size() && ContinuesName(text[end])) ++end;
        const bool prefix = end + 1 < text.size() && text[end] == ':' && StartsName(text[end + 1]);
        if (!prefix) break;
        ++end;
    }
    return end;
}

// Parses "[12]" at the front of the text and removes it.
bool TakeIndex(std::string_view& text, int& index) {
    const char* const end = text.data() + text.size();
    const auto [next, error] = std::from_chars(text.data() + 1, end, index);
    if (error != std::errc() || index < 0 || !IsDigit(text[1]) || next == end || *next != ']') return false;
    text.remove_prefix(static_cast<std::size_t>(next + 1 - text.data()));
    return true;
}

bool TakeStep(std::string_view& text, PathStep& step) {
    step.attribute = text.starts_with('@');
    if (step.attribute) text.remove_prefix(1);
    const bool any = !step.attribute && text.starts_with('*');
    const std::size_t end = any ? 1 : EndOfName(text, 0);
    if (end == 0) return false;
    step.name = text.substr(0, end);
    text.remove_prefix(end);
    if (!step.attribute && text.size() > 1 && text[0] == '[') return TakeIndex(text, step.index);
    return true;
}

// Rewrites an expression token by token.
class Translation {
public:
    explicit Translation(std::string_view path) : m_path(path) {}

    std::optional<std::string> Run() {
        // An evaluator would stop at a zero byte.
        if (m_path.size() > kLongest || m_path.find('\0') != m_path.npos) return std::nullopt;
        while (m_at < m_path.size())
            if (!Step()) return std::nullopt;
        if (!m_open.empty()) return std::nullopt;
        return std::move(m_out);
    }

private:
    bool Step() {
        const char c = m_path[m_at];
        if (IsSpace(c)) return Copy(1);
        if (c == '"' || c == '\'') return Literal(c);
        if (StartsName(c)) return Name();
        if (IsDigit(c)) return Number();
        if (c == '$') return false;
        if (c == '[' && Index()) return true;
        if (c == '[' || c == '(') return Open(c);
        if (c == ']' || c == ')') return Close(c);
        // "*" is a name test where an operand may follow, else the multiplication operator.
        m_operandBefore = (c == '*' && !m_operandBefore) || c == '.';
        m_attribute = c == '@';
        return Copy(1);
    }

    bool Copy(std::size_t count) {
        m_out.append(m_path, m_at, count);
        m_at += count;
        return true;
    }

    bool Literal(char quote) {
        const std::size_t end = m_path.find(quote, m_at + 1);
        m_operandBefore = true;
        return end != m_path.npos && Copy(end + 1 - m_at);
    }

    bool Number() {
        std::size_t end = m_at;
        while (end < m_path.size() && (IsDigit(m_path[end]) || m_path[end] == '.')) ++end;
        m_operandBefore = true;
        return Copy(end - m_at);
    }

    bool Open(char c) {
        m_open += c == '[' ? ']' : ')';
        m_operandBefore = false;
        return m_open.size() <= kDeepest && Copy(1);
    }

    bool Close(char c) {
        if (m_open.empty() || m_open.back() != c) return false;
        m_open.pop_back();
        m_operandBefore = true;
        return Copy(1);
    }

    // Parses a predicate that is a plain number.
    bool Index() {
        std::size_t at = SkipSpace(m_at + 1);
        const std::size_t first = at;
        while (at < m_path.size() && IsDigit(m_path[at])) ++at;
        const std::size_t end = SkipSpace(at);
        if (at == first || end == m_path.size() || m_path[end] != ']') return false;
        long long index = 0;
        if (std::from_chars(m_path.data() + first, m_path.data() + at, index).ec != std::errc() || index > 0x7FFFFFFF)
            index = 0x7FFFFFFF;
        m_out += '[' + std::to_string(index + 1) + ']';
        m_at = end + 1;
        m_operandBefore = true;
        return true;
    }

    std::size_t SkipSpace(std::size_t at) const {
        while (at < m_path.size() && IsSpace(m_path[at])) ++at;
        return at;
    }

    bool Name() {
        const std::size_t end = EndOfName(m_path, m_at), next = SkipSpace(end);
        const std::string_view rest = m_path.substr(next);
        const bool axis = rest.starts_with("::"), function = rest.starts_with('(');
        const bool isOperator = m_operandBefore && !axis;
        m_operandBefore = !isOperator && !axis;
        const bool attribute = std::exchange(m_attribute, false);
        const std::string_view name = m_path.substr(m_at, end - m_at);
        if (axis) return Axis(end, next + 2);
        if (function && !isOperator && !IsFunction(name)) return false;
        if (isOperator || function) return Copy(end - m_at);
        if (attribute && name.find(':') == name.npos) return Copy(end - m_at);
        m_out.append("*[name()='").append(name).append("']");
        m_at = end;
        return true;
    }

    bool Axis(std::size_t end, std::size_t next) {
        m_attribute = m_path.substr(m_at, end - m_at) == "attribute";
        return Copy(next - m_at);
    }

    std::string_view m_path;
    std::size_t m_at = 0;
    std::string m_out;
    std::string m_open;            // the expected closing brackets
    bool m_operandBefore = false;  // if true, an operator follows
    bool m_attribute = false;      // if true, the next name is an attribute's
};

}  // namespace

std::optional<SimplePath> ReadSimplePath(std::string_view path) {
    SimplePath simple;
    simple.absolute = path.starts_with('/');
    if (simple.absolute) path.remove_prefix(1);
    if (path.empty()) return simple.absolute ? std::optional(simple) : std::nullopt;
    simple.steps.reserve(8);
    for (;;) {
        if (!TakeStep(path, simple.steps.emplace_back())) return std::nullopt;
        if (path.empty()) return simple;
        if (path[0] != '/' || simple.steps.back().attribute) return std::nullopt;
        path.remove_prefix(1);
    }
}

std::optional<std::string> ToXPath(std::string_view path) {
    return Translation(path).Run();
}

}  // namespace qv::dom
