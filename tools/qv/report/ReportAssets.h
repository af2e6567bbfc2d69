#pragma once

#include <span>
#include <string_view>

namespace qv::tool {

/// A file that reports need in addition to the library's own.
struct ReportAsset {
    const char* name;
    std::string_view text;
};

/// In the order in which pages load them.
std::span<const ReportAsset> ReportAssets();

}  // namespace qv::tool
