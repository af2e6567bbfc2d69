# Embeds a text file as a string constant: qv_embed(scripts/Page.html kPage qv::html html/Page.h) generates the header
# html/Page.h in the build tree, with `constexpr std::string_view qv::html::kPage`. Bytes are unchanged; the header is
# regenerated when the file changes.
set(QV_EMBED_DIR ${PROJECT_BINARY_DIR}/embedded)

function(qv_embed file constant namespace header)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${file})
    file(READ ${file} text)
    file(CONFIGURE OUTPUT ${QV_EMBED_DIR}/${header} @ONLY NEWLINE_STYLE UNIX CONTENT [[
// Made from @file@ by the build.
#pragma once

#include <string_view>

namespace @namespace@ {

inline constexpr std::string_view @constant@ = R"qv~(@text@)qv~";

}  // namespace @namespace@
]])
endfunction()

# The same for a binary file.
function(qv_embed_bytes file constant namespace header)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${file})
    file(READ ${file} bytes HEX)
    string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${bytes}")
    file(CONFIGURE OUTPUT ${QV_EMBED_DIR}/${header} @ONLY NEWLINE_STYLE UNIX CONTENT [[
// Made from @file@ by the build.
#pragma once

#include <string_view>

namespace @namespace@ {

inline constexpr char @constant@Bytes[] = {@bytes@};
inline constexpr std::string_view @constant@{@constant@Bytes, sizeof @constant@Bytes};

}  // namespace @namespace@
]])
endfunction()
