#pragma once

#include "qvcommon/FileUtils.h"

namespace qv {

/// Copies and deletes as a system's shell does, for systems without one. The flags are those of CFileUtils.
class ShellTree {
public:
    ShellTree(unsigned short flags, const char* title, IShellProgress* progress)
        : m_flags(flags), m_title(title), m_progress(progress) {}

    /// Each returns true if everything was done and the user cancelled nothing. The first failure ends the work.
    bool Copy(const CString& source, const CString& destination);
    bool Delete(const CString& path);

private:
    struct Item {
        CString path;
        CString name;
        bool isFolder;
    };

    bool Has(unsigned short flag) const { return (m_flags & flag) != 0; }
    bool Collect(const CString& source, std::vector<Item>& items);
    bool PrepareFolder(const CString& folder);
    bool CopyItem(const Item& item, CString target, bool recursive);
    bool CopyFolder(const CString& source, const CString& target, bool recursive);
    bool CopyOneFile(const CString& source, const CString& target);
    bool DeleteItem(const Item& item);
    bool Confirm(const char* question, const CString& path);
    bool Show(const CString& path);
    bool Fail(const CString& path, unsigned long error);

    unsigned short m_flags;
    const char* m_title;
    IShellProgress* m_progress;
    CString m_outermost;      ///< the folder that receives the copies
    bool m_declined = false;  ///< the user answered No at least once
};

}  // namespace qv
