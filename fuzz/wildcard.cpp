#include <string>

#include "fuzz/FuzzInput.h"
#include "platform/Ascii.h"
#include "platform/Text.h"
#include "platform/Wildcard.h"

using qv::platform::Wildcard;

namespace {

constexpr std::size_t kLongest = 300;  // no name is longer, and time grows with both lengths

/// Masks without dots and question marks have a simple rule: their pieces occur in order.
bool MatchesPlainly(std::string_view mask, std::string_view name) {
    std::size_t star = mask.find('*');
    if (star == mask.npos) return mask == name;
    if (!name.starts_with(mask.substr(0, star))) return false;
    name.remove_prefix(star);
    for (;;) {
        mask.remove_prefix(star + 1);
        star = mask.find('*');
        if (star == mask.npos) return name.ends_with(mask);
        const std::size_t at = name.find(mask.substr(0, star));
        if (at == name.npos) return false;
        name.remove_prefix(at + star);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const std::string mask(input.Text().substr(0, kLongest)), name(input.Rest().substr(0, kLongest));
    const bool matches = Wildcard(mask).Matches(name);
    Require(Wildcard("*").Matches(name) && Wildcard("*.*").Matches(name), "a mask for every name takes every name");
    if (!Wildcard::IsWild(name)) Require(Wildcard(name).Matches(name), "a name is a mask for itself");
    // Other masks may begin or end within a character of the name, which is not a match.
    if (mask.find_first_of("?.") == mask.npos && !mask.empty() && qv::ascii::IsAscii(mask))
        Require(matches == MatchesPlainly(qv::platform::ToUpper(mask), qv::platform::ToUpper(name)),
                "stars are matched by their rule");
    return 0;
}
