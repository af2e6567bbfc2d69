#pragma once

#include <string>
#include <string_view>

namespace qv::platform {

/// A mask for file names, as on Windows: "*" any text, "?" any character, or nothing at a dot or the end; case is
/// ignored. A dot followed only by wildcards may be missing in the name, and "*." means a name without extension. O(n
/// m) in the lengths of mask and name.
class Wildcard {
public:
    explicit Wildcard(std::string_view mask);

    bool Matches(std::string_view name) const;

    static bool IsWild(std::string_view mask) { return mask.find_first_of("*?") != mask.npos; }

private:
    std::u32string m_mask;  // in upper case
    bool m_all;
};

}  // namespace qv::platform
