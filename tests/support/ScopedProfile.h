#pragma once

#include "platform/UserFolders.h"
#include "qvcommon/framework/WinApp.h"
#include "tests/support/TempFolder.h"

/// An application whose profile is in the given folder, where the system keeps profiles in folders.
class ScopedProfile : public CWinApp {
public:
    explicit ScopedProfile(const std::string& folder) : CWinApp("QvCommonTests") {
        m_isFile = qv::platform::UseUserFolder(folder.c_str());
    }
    ~ScopedProfile() override { qv::platform::UseUserFolder(nullptr); }

    bool IsFile() const { return m_isFile; }

private:
    bool m_isFile;
};
