#include "framework/PathText.h"

#include "framework/ExactSearch.h"
#include "platform/Text.h"

namespace qv {
namespace {

// `from` must be a character boundary.
std::size_t FindWhole(std::string_view text, std::string_view set, std::size_t from) {
    while (from < text.size() && set.find(text[from]) == set.npos)
        from += platform::CharacterLength(text, from, platform::CodePage::DoubleByte);
    return from < text.size() ? from : text.npos;
}

}  // namespace

std::size_t FindFirstOf(std::string_view text, std::string_view set, std::size_t from) {
    return HasTrailBytes(text) ? FindWhole(text, set, from) : text.find_first_of(set, from);
}

std::size_t FindLastOf(std::string_view text, std::string_view set) {
    if (!HasTrailBytes(text)) return text.find_last_of(set);
    std::size_t last = text.npos;
    for (std::size_t next = FindWhole(text, set, 0); next != text.npos; next = FindWhole(text, set, next + 1))
        last = next;
    return last;
}

bool EndsWithOneOf(std::string_view text, std::string_view set) {
    if (text.empty() || set.find(text.back()) == set.npos) return false;
    return !HasTrailBytes(text) || FindLastOf(text, set) == text.size() - 1;
}

}  // namespace qv
