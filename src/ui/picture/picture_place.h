#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "reports/icicle_layout.h"

namespace velkor::ui {

// A box of the picture, by where it begins: the same one at every zoom.
struct PicturePlace {
  size_t column = 0;
  size_t part = 0;  // the number of parts: what is missing

  bool operator==(const PicturePlace&) const = default;
};

enum class PictureMove { kUp, kDown, kLeft, kRight, kFirst, kLast };

// The box that holds the place in this layout.
std::optional<reports::IcicleBox> BoxAt(const reports::IcicleLayout& layout, PicturePlace place);
// The one under a point of the picture.
std::optional<PicturePlace> PlaceUnder(const reports::IcicleLayout& layout, double x, double y);
// To the box above or below, to the one at the same height in another column, or to an end of the
// column. The same place where there is none.
PicturePlace Moved(const reports::IcicleLayout& layout, PicturePlace place, PictureMove move);

// The functions of the column from its entry down to the place, as far as each calls the next: up
// to the first group of recursion, or to what is no call.
std::vector<uint32_t> PathTo(const reports::IcicleColumn& column, size_t part);
// None for what is not one function.
std::optional<uint32_t> FunctionAt(const reports::IcicleLayout& layout, PicturePlace place);

}  // namespace velkor::ui
