#pragma once

#include <string>
#include <vector>

#include "qvcommon/ImageHelper.h"

/// Reading and writing of picture files for commands.
namespace qv::tool {

enum class PictureFormat { Bmp, Png, Ico };

/// "BMP", "PNG" or "ICO".
const char* NameOf(PictureFormat format);
/// Returns the format for a word "bmp", "png" or "ico"; for an empty word, the format for the path's extension, by
/// default BMP.
PictureFormat FormatFor(const std::string& word, const std::string& path);

/// The picture in a file of any supported format, detected by its first bytes; the largest picture of an icon. "-" is
/// standard input.
class PictureFile : public CDIBitmap {
public:
    /// @throws CommandError, CFileException*
    explicit PictureFile(const std::string& path);

    PictureFormat Format() const { return m_format; }

protected:
    int m_headerSize = sizeof(DibHeader);  ///< of a bitmap file

private:
    void LoadFrom(CFile& file, const std::string& path);
    void LoadLargest(CFile& file);

    PictureFormat m_format = PictureFormat::Bmp;
};

/// Writes the picture in a format. An icon contains it once per size, fitted into squares of that many pixels; without
/// sizes, unchanged. @throws CommandError, which names `source`; CFileException*
void WritePicture(const std::string& path, PictureFormat format, const std::vector<int>& iconSizes, CDIBitmap& picture,
                  const std::string& source);

}  // namespace qv::tool
