#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qv::dom {

/// Bytes in a code page of the system, in UTF-8. Nothing when the system lacks the page, or the bytes are not in it.
std::optional<std::string> FromPage(std::string_view bytes, unsigned page);

/// The same for ISO-2022-JP (RFC 1468), for which not every system has a page.
std::optional<std::string> FromIso2022Jp(std::string_view bytes);

}  // namespace qv::dom
