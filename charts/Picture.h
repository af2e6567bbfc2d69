#pragma once

#include "charts/Keys.h"

namespace qv::charts {

inline constexpr double kMargin = 16;

/// The accessible texts of a picture.
struct Caption {
    CString id;
    int width, height;
    CString title;  ///< the heading; may be empty
    CString name, description;
};

/// Begins a picture: the element, its names, the style sheet for `keys` keys, the background and the heading. Returns
/// the remaining room.
Box BeginPicture(Svg& svg, const Caption& caption, std::size_t keys);
/// Ends the drawing; tables and EndPicture follow.
void EndDrawing(Svg& svg);
void EndPicture(Svg& svg);

/// Draws a heading of at most two lines and returns the room below it.
Box DrawHeading(Svg& svg, const Box& box, const Label& heading, std::string_view classes);
void DrawNoData(Svg& svg, const Box& box);

/// @throws CInvalidArgException* for an invalid size or id.
void CheckSize(int width, int height);
void CheckId(std::string_view id);

}  // namespace qv::charts
