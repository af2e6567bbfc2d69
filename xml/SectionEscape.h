#pragma once

#include <string>
#include <string_view>

namespace qv {

/// Appends the text with its specials escaped.
void AppendSectionText(std::string& out, std::string_view text);
/// The inverse.
std::string SectionTextOf(std::string_view escaped);

}  // namespace qv
