#pragma once

#include "charts/Keys.h"

namespace qv::charts {

inline constexpr double kMargin = 16;

/// What a picture says of itself.
struct Caption {
    CString id;
    int width, height;
    CString title;  ///< the heading; may be empty
    CString name, description;
};

/// Begins a picture: the element, its names, the style sheet for so many keys, the background and the heading. Returns the
/// room that is left.
Box BeginPicture(Svg& svg, const Caption& caption, std::size_t keys);
/// Ends what is drawn; tables and EndPicture follow.
void EndDrawing(Svg& svg);
void EndPicture(Svg& svg);

/// Draws a heading of at most two lines and returns the room below it.
Box DrawHeading(Svg& svg, const Box& box, const Label& heading, std::string_view classes);
void DrawNoData(Svg& svg, const Box& box);

/// @throws CInvalidArgException* for a size, or an id, that no picture can have.
void CheckSize(int width, int height);
void CheckId(std::string_view id);

}  // namespace qv::charts
