#pragma once

#include <string>
#include <string_view>

namespace qv {

bool NeedsEscapes(std::string_view text);
/// Appends the text with its special characters escaped.
void AppendSectionText(std::string& out, std::string_view text);
/// The inverse of AppendSectionText.
std::string SectionTextOf(std::string_view escaped);

}  // namespace qv
