#include "qvcommon/HtmlAssets.h"

#include "html/AssetClosed.h"
#include "html/AssetFolder.h"
#include "html/AssetFolderExpanded.h"
#include "html/AssetOpen.h"
#include "html/AssetRolledDown.h"
#include "html/AssetRolledUp.h"
#include "html/AssetStyleSheet.h"
#include "html/AssetTreeMenu.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"

namespace {

using namespace qv::html;

struct Asset {
    const char* name;
    std::string_view bytes;
};

constexpr Asset kAssets[] = {
    {"TreeMenu.js", kAssetTreeMenu},
    {"closed.gif", kAssetClosed},
    {"folder-expanded.gif", kAssetFolderExpanded},
    {"folder.gif", kAssetFolder},
    {"open.gif", kAssetOpen},
    {"qvcommon.css", kAssetStyleSheet},
    {"rolleddown.gif", kAssetRolledDown},
    {"rolledup.gif", kAssetRolledUp},
};

bool Holds(const CString& path, std::string_view bytes) {
    CFile file;
    if (!file.Open(path, CFile::modeRead | CFile::shareDenyNone)) return false;
    std::string held(bytes.size() + 1, '\0');
    held.resize(file.Read(held.data(), static_cast<UINT>(held.size())));
    return held == bytes;
}

}  // namespace

void CHtmlAssets::GetNames(CStringArray& names) {
    for (const Asset& asset : kAssets) names.Add(asset.name);
}

std::string_view CHtmlAssets::GetBytes(std::string_view name) {
    for (const Asset& asset : kAssets)
        if (name == asset.name) return asset.bytes;
    return {};
}

void CHtmlAssets::CopyTo(const char* directory) {
    for (const Asset& asset : kAssets) {
        const CString path = CFileUtils::TerminateDir(directory) + asset.name;
        if (Holds(path, asset.bytes)) continue;
        CFile file(path, CFile::modeCreate | CFile::modeWrite | CFile::shareDenyWrite);
        file.Write(asset.bytes.data(), static_cast<UINT>(asset.bytes.size()));
        file.Close();
    }
}
