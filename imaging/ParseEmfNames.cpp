#include <algorithm>
#include <cstdio>
#include <iterator>
#include <string_view>

#include "platform/Ascii.h"
#include "qvcommon/ParseEmf.h"

namespace {

// Sorted by name. Types above 101 were added later and are reported as unknown, like 100.
constexpr ID_NAME_PAIR kRecordNames[] = {
    {68, "EMR_ABORTPATH"},
    {41, "EMR_ANGLEARC"},
    {45, "EMR_ARC"},
    {55, "EMR_ARCTO"},
    {59, "EMR_BEGINPATH"},
    {76, "EMR_BITBLT"},
    {46, "EMR_CHORD"},
    {61, "EMR_CLOSEFIGURE"},
    {39, "EMR_CREATEBRUSHINDIRECT"},
    {99, "EMR_CREATECOLORSPACE"},
    {94, "EMR_CREATEDIBPATTERNBRUSHPT"},
    {93, "EMR_CREATEMONOBRUSH"},
    {49, "EMR_CREATEPALETTE"},
    {38, "EMR_CREATEPEN"},
    {101, "EMR_DELETECOLORSPACE"},
    {40, "EMR_DELETEOBJECT"},
    {42, "EMR_ELLIPSE"},
    {60, "EMR_ENDPATH"},
    {14, "EMR_EOF"},
    {29, "EMR_EXCLUDECLIPRECT"},
    {82, "EMR_EXTCREATEFONTINDIRECTW"},
    {95, "EMR_EXTCREATEPEN"},
    {53, "EMR_EXTFLOODFILL"},
    {75, "EMR_EXTSELECTCLIPRGN"},
    {83, "EMR_EXTTEXTOUTA"},
    {84, "EMR_EXTTEXTOUTW"},
    {62, "EMR_FILLPATH"},
    {71, "EMR_FILLRGN"},
    {65, "EMR_FLATTENPATH"},
    {72, "EMR_FRAMERGN"},
    {70, "EMR_GDICOMMENT"},
    {1, "EMR_HEADER"},
    {30, "EMR_INTERSECTCLIPRECT"},
    {73, "EMR_INVERTRGN"},
    {54, "EMR_LINETO"},
    {78, "EMR_MASKBLT"},
    {36, "EMR_MODIFYWORLDTRANSFORM"},
    {27, "EMR_MOVETOEX"},
    {26, "EMR_OFFSETCLIPRGN"},
    {74, "EMR_PAINTRGN"},
    {47, "EMR_PIE"},
    {79, "EMR_PLGBLT"},
    {2, "EMR_POLYBEZIER"},
    {85, "EMR_POLYBEZIER16"},
    {5, "EMR_POLYBEZIERTO"},
    {88, "EMR_POLYBEZIERTO16"},
    {56, "EMR_POLYDRAW"},
    {92, "EMR_POLYDRAW16"},
    {3, "EMR_POLYGON"},
    {86, "EMR_POLYGON16"},
    {4, "EMR_POLYLINE"},
    {87, "EMR_POLYLINE16"},
    {6, "EMR_POLYLINETO"},
    {89, "EMR_POLYLINETO16"},
    {8, "EMR_POLYPOLYGON"},
    {91, "EMR_POLYPOLYGON16"},
    {7, "EMR_POLYPOLYLINE"},
    {90, "EMR_POLYPOLYLINE16"},
    {96, "EMR_POLYTEXTOUTA"},
    {97, "EMR_POLYTEXTOUTW"},
    {52, "EMR_REALIZEPALETTE"},
    {43, "EMR_RECTANGLE"},
    {51, "EMR_RESIZEPALETTE"},
    {34, "EMR_RESTOREDC"},
    {44, "EMR_ROUNDRECT"},
    {33, "EMR_SAVEDC"},
    {31, "EMR_SCALEVIEWPORTEXTEX"},
    {32, "EMR_SCALEWINDOWEXTEX"},
    {67, "EMR_SELECTCLIPPATH"},
    {37, "EMR_SELECTOBJECT"},
    {48, "EMR_SELECTPALETTE"},
    {57, "EMR_SETARCDIRECTION"},
    {25, "EMR_SETBKCOLOR"},
    {18, "EMR_SETBKMODE"},
    {13, "EMR_SETBRUSHORGEX"},
    {23, "EMR_SETCOLORADJUSTMENT"},
    {80, "EMR_SETDIBITSTODEVICE"},
    {98, "EMR_SETICMMODE"},
    {17, "EMR_SETMAPMODE"},
    {16, "EMR_SETMAPPERFLAGS"},
    {28, "EMR_SETMETARGN"},
    {58, "EMR_SETMITERLIMIT"},
    {50, "EMR_SETPALETTEENTRIES"},
    {15, "EMR_SETPIXELV"},
    {19, "EMR_SETPOLYFILLMODE"},
    {20, "EMR_SETROP2"},
    {21, "EMR_SETSTRETCHBLTMODE"},
    {22, "EMR_SETTEXTALIGN"},
    {24, "EMR_SETTEXTCOLOR"},
    {11, "EMR_SETVIEWPORTEXTEX"},
    {12, "EMR_SETVIEWPORTORGEX"},
    {9, "EMR_SETWINDOWEXTEX"},
    {10, "EMR_SETWINDOWORGEX"},
    {35, "EMR_SETWORLDTRANSFORM"},
    {77, "EMR_STRETCHBLT"},
    {81, "EMR_STRETCHDIBITS"},
    {63, "EMR_STROKEANDFILLPATH"},
    {64, "EMR_STROKEPATH"},
    {66, "EMR_WIDENPATH"},
};
static_assert(std::size(kRecordNames) == 99);

}  // namespace

void CParseEmf::GetFunctionNameFromId(unsigned long type, char* buffer, unsigned size) {
    const int index = GetTableIndexFromId(type, kRecordNames, static_cast<int>(std::size(kRecordNames)));
    if (index >= 0) {
        const std::string_view name = kRecordNames[index].name;
        const std::size_t copied = name.copy(buffer, size);
        std::fill(buffer + copied, buffer + size, '\0');
    } else {
        constexpr std::size_t longest = sizeof "Unknown function: FFFF";
        std::snprintf(buffer, longest, "Unknown function: %hX", static_cast<unsigned short>(type));
    }
}

int CParseEmf::GetTableIndexFromId(unsigned long type, const ID_NAME_PAIR* table, int count) {
    const ID_NAME_PAIR* const end = table + count;
    const ID_NAME_PAIR* const found = std::find_if(table, end, [=](const ID_NAME_PAIR& p) { return p.id == type; });
    return found == end ? -1 : static_cast<int>(found - table);
}

int CParseEmf::GetTableIndexFromName(const char* name, const ID_NAME_PAIR* table, int count) {
    const std::string_view wanted = name ? name : "";
    const ID_NAME_PAIR* const end = table + count;
    const ID_NAME_PAIR* const found =
        std::find_if(table, end, [=](const ID_NAME_PAIR& p) { return qv::ascii::EqualsIgnoreCase(wanted, p.name); });
    return found == end ? -1 : static_cast<int>(found - table);
}
