#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qv::dom {

/// Converts a file's bytes to UTF-8 from the encoding given by their byte order mark or declaration, UTF-8 if they have
/// neither. Returns nullopt if the system does not know the encoding or the bytes are invalid in it.
std::optional<std::string> Decode(std::string_view bytes);

/// Returns the encoding named in the declaration of an ASCII or UTF-8 text, as a part of the text; empty if there is
/// none.
std::string_view DeclaredEncoding(std::string_view text);

}  // namespace qv::dom
