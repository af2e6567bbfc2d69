#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qv::dom {

/// Converts bytes in a code page of the system to UTF-8. Returns nullopt if the system lacks the page or the bytes are
/// invalid in it.
std::optional<std::string> FromPage(std::string_view bytes, unsigned page);

/// The same for ISO-2022-JP (RFC 1468), for which some systems have no page.
std::optional<std::string> FromIso2022Jp(std::string_view bytes);

}  // namespace qv::dom
