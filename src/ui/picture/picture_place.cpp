#include "ui/picture/picture_place.h"

#include <algorithm>

namespace velkor::ui {

using reports::IcicleBox;
using reports::IcicleColumn;
using reports::IcicleKind;
using reports::IcicleLayout;
using reports::IciclePart;

namespace {

// The box that reaches over a height of the column; the nearest one outside them all.
std::optional<IcicleBox> BoxOver(const IcicleLayout& layout, size_t column, double y) {
  const double top = layout.TopOf(0);
  const IcicleColumn& shown = layout.Shown().columns[column];
  const double bottom = layout.TopOf(shown.known);
  const double within = shown.bounded ? std::clamp(y, top, bottom) : std::max(y, top);
  const std::vector<IcicleBox> boxes = layout.BoxesBetween(column, within, within);
  const auto over = std::ranges::find_if(boxes, [within](const IcicleBox& box) {
    return within >= box.top && within < box.top + box.height;
  });
  return over != boxes.end()  ? std::optional(*over)
         : boxes.empty() ? std::nullopt
                         : std::optional(boxes.back());
}

// The first from there on that has a height; none where the column ends.
std::optional<size_t> PartFrom(const IcicleColumn& column, size_t part) {
  while (part < column.parts.size() && column.BytesOf(part) == 0) {
    ++part;
  }
  return part < column.parts.size() || (part == column.parts.size() && !column.bounded)
             ? std::optional(part)
             : std::nullopt;
}

std::optional<size_t> PartAbove(const IcicleColumn& column, size_t part) {
  while (part > 0) {
    --part;
    if (column.BytesOf(part) > 0) {
      return part;
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<IcicleBox> BoxAt(const IcicleLayout& layout, PicturePlace place) {
  if (place.column >= layout.Shown().columns.size()) {
    return std::nullopt;
  }
  const IcicleColumn& column = layout.Shown().columns[place.column];
  if (place.part >= column.parts.size()) {
    return column.bounded ? std::nullopt : BoxOver(layout, place.column, layout.Height());
  }
  const double top = layout.TopOf(column.TopOf(place.part));
  const double bottom = layout.TopOf(column.parts[place.part].bottom);
  return BoxOver(layout, place.column, (top + bottom) / 2);
}

std::optional<PicturePlace> PlaceUnder(const IcicleLayout& layout, double x, double y) {
  const double left = x - layout.LeftOf(0);
  const auto column = static_cast<size_t>(std::max(0.0, left) / layout.Measures().columnWidth);
  if (left < 0 || column >= layout.Shown().columns.size()) {
    return std::nullopt;
  }
  const std::optional<IcicleBox> box = BoxOver(layout, column, y);
  const bool isOver = box && y >= box->top && y <= box->top + box->height;
  return isOver ? std::optional(PicturePlace{column, box->part}) : std::nullopt;
}

PicturePlace Moved(const IcicleLayout& layout, PicturePlace place, PictureMove move) {
  const std::vector<IcicleColumn>& columns = layout.Shown().columns;
  const std::optional<IcicleBox> box = BoxAt(layout, place);
  if (!box) {
    return place;
  }
  const IcicleColumn& column = columns[place.column];
  const auto at = [&](std::optional<size_t> part) {
    const std::optional<IcicleBox> found =
        part ? BoxAt(layout, {place.column, *part}) : std::nullopt;
    return found ? PicturePlace{place.column, found->part} : place;
  };
  switch (move) {
    case PictureMove::kUp:
      return at(PartAbove(column, box->part));
    case PictureMove::kDown:
      return at(PartFrom(column, box->part + box->count));
    case PictureMove::kFirst:
      return at(PartFrom(column, 0));
    case PictureMove::kLast:
      return at(column.bounded ? PartAbove(column, column.parts.size())
                               : std::optional(column.parts.size()));
    default:
      break;
  }
  const size_t to = move == PictureMove::kLeft ? place.column - 1 : place.column + 1;
  if (to >= columns.size()) {
    return place;
  }
  const std::optional<IcicleBox> beside = BoxOver(layout, to, box->top + 1e-6);
  return beside ? PicturePlace{to, beside->part} : place;
}

std::vector<uint32_t> PathTo(const IcicleColumn& column, size_t part) {
  std::vector<uint32_t> path;
  for (size_t i = 0; i < std::min(part + 1, column.parts.size()); ++i) {
    const IciclePart& call = column.parts[i];
    if (call.kind == IcicleKind::kFunction || call.kind == IcicleKind::kUndefined) {
      path.push_back(call.function);
    } else {
      break;
    }
  }
  return path;
}

std::optional<uint32_t> FunctionAt(const IcicleLayout& layout, PicturePlace place) {
  const std::optional<IcicleBox> box = BoxAt(layout, place);
  if (!box || box->kind == IcicleKind::kSmall || box->kind == IcicleKind::kMissing) {
    return std::nullopt;
  }
  const uint32_t function =
      layout.Shown().columns[place.column].parts[box->part].function;
  return function == reports::IcicleFigure::kNoFunction ? std::nullopt : std::optional(function);
}

}  // namespace velkor::ui
