#pragma once

#include <string>
#include <string_view>

namespace qv::platform {

/// A mask for names of files, as Windows reads them: "*" any text, "?" any character or none at a point or the end, without
/// regard to case. A point before wild cards only may be missing in the name, and "*." means a name without extension.
/// Takes time in line with the mask's length times the name's.
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
