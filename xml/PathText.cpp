#include "xml/PathText.h"

#include <charconv>

#include "platform/Ascii.h"

namespace qv {

std::vector<std::string_view> StepsOf(std::string_view path) {
    std::vector<std::string_view> steps;
    std::size_t from = 0;
    int depth = 0;
    char quote = 0;
    for (std::size_t i = 0; i < path.size(); ++i) {
        const char c = path[i];
        if (quote) {
            quote = c == quote ? '\0' : quote;
        } else if (c == '\'' || c == '"') {
            quote = c;
        } else if (c == '[' || c == '(') {
            ++depth;
        } else if (c == ']' || c == ')') {
            --depth;
        } else if (c == '/' && depth <= 0) {
            steps.push_back(path.substr(from, i - from));
            from = i + 1;
        }
    }
    steps.push_back(path.substr(from));
    return steps;
}

bool TakesIndex(std::string_view step) {
    return !step.empty() && step != "." && step != ".." && step[0] != '@' && step.back() != ']' && step.back() != ')';
}

IndexedStep ReadIndexedStep(std::string_view step) {
    IndexedStep result{.name = step};
    const std::size_t open = step.find('[');
    if (open == step.npos) return result;
    result.name = step.substr(0, open);
    const std::string_view number = ascii::Trimmed(step.substr(open + 1, step.rfind(']') - open - 1), ascii::IsSpace);
    const char* const end = number.data() + number.size();
    const auto [next, error] = std::from_chars(number.data(), end, result.index);
    result.valid = error == std::errc() && next == end && step.back() == ']' && result.index >= 0;
    return result;
}

}  // namespace qv
