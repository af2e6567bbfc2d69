#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/MessageBox.h"

int ValidateDir(const char* path) {
    constexpr UINT kWarning = 48, kYesNo = 4;
    constexpr int kYes = 6;
    const CString folder = path;
    if (CFileUtils::IsDirectory(folder)) return 1;
    if (folder.IsEmpty()) {
        AfxMessageBox("No directory was specified.", kWarning);
        return 0;
    }
    constexpr const char* kQuestion = "The directory specified can not be found.  Would you like to create it?";
    if (AfxMessageBox(kQuestion, kYesNo | kWarning) != kYes) return 0;
    if (QvCreateDirectory(folder)) return 1;
    AfxMessageBox("The directory specified could not be created.", kWarning);
    return 0;
}
