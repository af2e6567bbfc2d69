#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qv::dom {

/// The bytes of a file in UTF-8, from the encoding that their byte order mark or their declaration names; without either
/// they are UTF-8. Nothing when the system does not know the encoding, or they are not in it.
std::optional<std::string> Decode(std::string_view bytes);

/// The encoding that the declaration of a text of ASCII characters, or of UTF-8, names: a part of the text; empty for none.
std::string_view DeclaredEncoding(std::string_view text);

}  // namespace qv::dom
