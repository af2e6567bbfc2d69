#pragma once

#include <string>
#include <vector>

#include "qvcommon/FileUtils.h"

/// Records the cause of what is left out, as a number, and the first bytes of its name.
struct Recorder : ILeftOut {
    std::vector<std::string> names;
    void OnLeftOut(const QvLeftOut& entry) override {
        const CString name = CFileUtils::GetFilenameFromPath(entry.path);
        names.push_back(std::to_string(entry.cause) + ' ' + name.Left(8).AsStd());
    }
};
