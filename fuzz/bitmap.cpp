// Reads arbitrary bytes as a bitmap: it loads or raises one of two texts, draws within its target, and when saved whole
// loads again with the same rows.

#include <algorithm>
#include <vector>

#include "fuzz/FuzzFile.h"
#include "fuzz/FuzzInput.h"
#include "qvcommon/DIBitmap.h"

namespace {

class Bitmap : public CDIBitmap {
public:
    std::string_view Rows() const { return {reinterpret_cast<const char*>(m_bits.get()), m_bitsSize}; }
    void Draw() {
        std::vector<DWORD> pixels(8 * 8);
        const CDC target(CPixelBuffer{pixels.data(), 8, 8, 8});
        DrawDIB(target, 0, 0);
        DrawDIB(target, -5, 3, 30, 3);
        DrawDIB(target, 0, 0, 8, 8, GetWidth() / 2, 0, 1, 1);
    }
    void Pack() {
        UnPadBits();
        m_padded = 0;
    }
};

bool Loads(Bitmap& bitmap, CFile& file) {
    try {
        return bitmap.LoadConverted(file);
    } catch (const char*) {
        return false;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    static FuzzFile input("bitmap"), output("bitmap-saved");
    Bitmap bitmap;
    const bool loads = Loads(bitmap, input.Holding(data, size));
    if (size > 14 && data[14] == 40) {
        Bitmap plain;
        try {
            plain.Load(input.Holding(data, size));
            Require(loads && plain.Rows() == bitmap.Rows(), "both read plain headers alike");
        } catch (const char*) {
            Require(!loads, "and refuse the same");
        }
    }
    if (!loads) return 0;
    Require(bitmap.Rows().size() <= size, "no more rows than the file has");
    bitmap.Draw();
    if (CFile& saved = output.Holding("", 0); bitmap.SaveWhole(saved)) {
        Bitmap again;
        saved.Seek(0, CFile::begin);
        Require(Loads(again, saved), "what is saved loads");
        Require(bitmap.Rows().starts_with(again.Rows()), "what is saved has the same rows");
    }
    bitmap.Save(output.Holding("", 0));
    bitmap.Pack();
    bitmap.Draw();
    bitmap.SaveWhole(output.Holding("", 0));
    bitmap.PadBits();
    return 0;
}
