#pragma once

#include <string>
#include <vector>

#include "qvcommon/ImageHelper.h"

/// Files of pictures, as commands read and write them.
namespace qv::tool {

enum class PictureFormat { Bmp, Png, Ico };

/// "BMP", "PNG" or "ICO".
const char* NameOf(PictureFormat format);
/// For a word "bmp", "png" or "ico"; without a word by the extension of the path, BMP for others.
PictureFormat FormatFor(const std::string& word, const std::string& path);

/// The picture of a file, whatever its format, which its first bytes tell; of an icon the largest one. "-" is standard
/// input.
class PictureFile : public CDIBitmap {
public:
    /// @throws Failed, CFileException*
    explicit PictureFile(const std::string& path);

    PictureFormat Format() const { return m_format; }

protected:
    int m_headerSize = sizeof(DibHeader);  ///< of a bitmap file

private:
    void LoadFrom(CFile& file, const std::string& path);
    void LoadLargest(CFile& file);

    PictureFormat m_format = PictureFormat::Bmp;
};

/// Writes the picture in a format; as an icon in these sizes: it is fitted into squares of so many pixels. Without sizes
/// an icon has the picture as it is. @throws Failed, which names `source`; CFileException*
void WritePicture(const std::string& path, PictureFormat format, const std::vector<int>& iconSizes, CDIBitmap& picture,
                  const std::string& source);

}  // namespace qv::tool
