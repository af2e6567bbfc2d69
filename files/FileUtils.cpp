#include "qvcommon/FileUtils.h"

#include "qvcommon/framework/File.h"

bool CFileUtils::MakeWritable(const char* path) {
    CFileStatus status;
    if (!CFile::GetStatus(path, status)) return true;
    status.m_attribute = static_cast<BYTE>(status.m_attribute & ~CFile::readOnly);
    try {
        CFile::SetStatus(path, status);
        return true;
    } catch (CFileException* error) {
        error->Delete();
        return false;
    }
}
