// Reads arbitrary bytes as an icon file: it is read or refused with the documented error, and its small pictures can be
// written as an icon with the same pixels.

#include "fuzz/FuzzFile.h"
#include "fuzz/FuzzInput.h"
#include "qvcommon/Exceptions.h"
#include "qvcommon/ImageHelper.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    static FuzzFile input("icon"), output("icon-written");
    try {
        const CImageHelper::Pictures pictures = CImageHelper::ReadIcon(input.Holding(data, size));
        std::vector<const CDIBitmap*> small;
        for (const auto& picture : pictures) {
            int width = 0, height = 0;
            Require(CImageHelper::GetSize(*picture, width, height) && width > 0 && height > 0, "a picture has pixels");
            if (width <= 256 && height <= 256) small.push_back(picture.get());
        }
        CFile& written = output.Holding("", 0);
        if (!CImageHelper::WriteIcon(written, small)) return 0;
        written.Seek(0, CFile::begin);
        const CImageHelper::Pictures again = CImageHelper::ReadIcon(written);
        Require(again.size() == small.size(), "all pictures are written");
        for (std::size_t i = 0; i < small.size(); ++i)
            Require(CImageHelper::AreEqual(*again[i], *small[i]), "with the same pixels");
    } catch (CVorbexException* refused) {
        Require(refused->GetSeverity() == 48 && refused->GetCode() == 0, "the error is the documented one");
        refused->Delete();
    }
    return 0;
}
