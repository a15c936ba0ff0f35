#include "reports/icicle_svg.h"

#include <algorithm>
#include <fmt/format.h>
#include <string_view>

#include "reports/html_text.h"
#include "reports/terminal_text.h"

namespace velkor::reports {
namespace {

constexpr double kGap = 4;  // on each side of a column
constexpr double kCharacterWidth = 6.3;
constexpr double kHeadCharacterWidth = 8.6;
constexpr double kLineHeight = 13;

std::string_view ClassOf(IcicleKind kind) {
  switch (kind) {
    case IcicleKind::kFunction:
      return "function";
    case IcicleKind::kUndefined:
      return "undefined";
    case IcicleKind::kRecursion:
      return "recursion";
    case IcicleKind::kSmall:
      return "small";
    case IcicleKind::kMissing:
      break;
  }
  return "missing";
}

// As much as fits into a width.
std::string Fitting(std::string_view name, double width, double characterWidth) {
  const auto most = static_cast<size_t>(std::max(1.0, width / characterWidth));
  if (CharacterCount(name) <= most) {
    return HtmlText(name);
  }
  return HtmlText(FirstCharacters(name, most - 1)) + "…";
}

class SvgOutput {
 public:
  SvgOutput(const Icicle& icicle, ResultOutput& output) : icicle_(icicle), output_(output) {}

  void Write(const std::function<std::string(size_t)>& targetOf) {
    output_.Write(fmt::format(
        "<svg class=\"icicle\" viewBox=\"0 0 {0:.0f} {1:.0f}\" width=\"{0:.0f}\" "
        "height=\"{1:.0f}\" role=\"group\" aria-label=\"Bytes of the largest functions\">\n"
        "<defs><pattern id=\"hatch\" width=\"7\" height=\"7\" patternUnits=\"userSpaceOnUse\" "
        "patternTransform=\"rotate(45)\"><rect class=\"blank\" width=\"7\" height=\"7\"/>"
        "<path class=\"hatch\" d=\"M0 0V7\"/></pattern></defs>\n",
        icicle_.width, icicle_.height));
    WriteTicks();
    for (size_t i = 0; i < icicle_.columns.size(); ++i) {
      WriteColumn(i, targetOf(i));
    }
    output_.Write("</svg>\n");
  }

 private:
  void WriteTicks() {
    for (const IcicleTick& tick : icicle_.ticks) {
      output_.Write(fmt::format(
          "<path class=\"tick\" d=\"M{:.0f} {:.1f}H{:.0f}\"/><text class=\"number\" x=\"{:.0f}\" "
          "y=\"{:.1f}\">{}</text>\n",
          icicle_.columnsLeft - kGap, tick.top, icicle_.width, icicle_.columnsLeft - 2 * kGap,
          tick.top + kGap, tick.bytes));
    }
  }

  void WriteColumn(size_t number, const std::string& target) {
    const IcicleColumn& column = icicle_.columns[number];
    const double left = icicle_.columnsLeft + icicle_.columnWidth * static_cast<double>(number);
    const double x = left + kGap;
    const double width = icicle_.columnWidth - 2 * kGap;
    output_.Write(fmt::format("<a href=\"#{}\" aria-label=\"{}: {} bytes\">\n", target,
                              HtmlText(column.name), HtmlText(column.known)));
    output_.Write(
        fmt::format("<text class=\"name\" x=\"{0:.0f}\" y=\"{1:.0f}\">{2}<title>{3}</title></text>"
                    "<text class=\"known\" x=\"{0:.0f}\" y=\"{4:.0f}\">{5}</text>\n",
                    x, icicle_.boxesTop - 22, Fitting(column.shortName, width, kHeadCharacterWidth),
                    HtmlText(column.name), icicle_.boxesTop - 7, HtmlText(column.known)));
    for (const IcicleBox& box : column.boxes) {
      WriteBox(box, x, width);
    }
    output_.Write("</a>\n");
    if (column.stackLine) {
      output_.Write(fmt::format("<path class=\"stack\" d=\"M{:.0f} {:.1f}H{:.0f}\"/>\n", left,
                                *column.stackLine, left + icicle_.columnWidth));
    }
  }

  void WriteBox(const IcicleBox& box, double x, double width) {
    output_.Write(fmt::format(
        "<g class=\"{}\"><title>{}</title><rect x=\"{:.0f}\" y=\"{:.1f}\" width=\"{:.0f}\" "
        "height=\"{:.1f}\"/>",
        ClassOf(box.kind), HtmlText(box.text), x, box.top, width, box.height));
    double baseline = box.top + kLineHeight - 3;
    for (const std::string& line : box.lines) {
      if (baseline + 2 > box.top + box.height) {
        break;
      }
      output_.Write(fmt::format(R"(<text x="{:.0f}" y="{:.1f}">{}</text>)", x + kGap, baseline,
                                Fitting(line, width - 2 * kGap, kCharacterWidth)));
      baseline += kLineHeight;
    }
    output_.Write("</g>\n");
  }

  const Icicle& icicle_;
  ResultOutput& output_;
};

}  // namespace

void WriteIcicleSvg(const Icicle& icicle, const std::function<std::string(size_t)>& targetOf,
                    ResultOutput& output) {
  SvgOutput(icicle, output).Write(targetOf);
}

}  // namespace velkor::reports
