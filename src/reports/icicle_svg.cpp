#include "reports/icicle_svg.h"

#include <algorithm>
#include <fmt/format.h>
#include <string_view>

#include "reports/html_text.h"
#include "reports/terminal_text.h"

namespace velkor::embedded {
extern const std::string_view icicleStyle;
}  // namespace velkor::embedded

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
    case IcicleKind::kFigure:
      return "figure";
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
  SvgOutput(const IcicleLayout& layout, ResultOutput& output) : layout_(layout), output_(output) {}

  void WriteStart(std::string_view attributes) {
    output_.Write(fmt::format(
        "<svg{2} class=\"icicle\" viewBox=\"0 0 {0:.0f} {1:.0f}\" width=\"{0:.0f}\" "
        "height=\"{1:.0f}\" role=\"group\" aria-label=\"{3}\">\n",
        layout_.Width(), layout_.Height(), attributes, HtmlText(layout_.Words().title)));
  }

  void WriteHatch() {
    output_.Write(
        "<defs><pattern id=\"hatch\" width=\"7\" height=\"7\" patternUnits=\"userSpaceOnUse\" "
        "patternTransform=\"rotate(45)\"><rect class=\"blank\" width=\"7\" height=\"7\"/>"
        "<path class=\"hatch\" d=\"M0 0V7\"/></pattern></defs>\n");
  }

  void WriteTicks() {
    const double left = layout_.Measures().axisWidth;
    for (const IcicleTick& tick : layout_.Ticks()) {
      output_.Write(fmt::format(
          "<path class=\"tick\" d=\"M{:.0f} {:.1f}H{:.0f}\"/><text class=\"number\" x=\"{:.0f}\" "
          "y=\"{:.1f}\">{}</text>\n",
          left - kGap, tick.top, layout_.Width(), left - 2 * kGap, tick.top + kGap, tick.bytes));
    }
  }

  void WriteColumn(size_t number) {
    const double x = layout_.LeftOf(number) + kGap;
    const double width = layout_.Measures().columnWidth - 2 * kGap;
    const double boxesTop = layout_.TopOf(0);
    output_.Write(fmt::format(
        "<text class=\"name\" x=\"{0:.0f}\" y=\"{1:.0f}\">{2}<title>{3}</title></text>"
        "<text class=\"known\" x=\"{0:.0f}\" y=\"{4:.0f}\">{5}</text>\n",
        x, boxesTop - 22, Fitting(layout_.ShortName(number), width, kHeadCharacterWidth),
        HtmlText(layout_.Name(number)), boxesTop - 7, HtmlText(layout_.Known(number))));
    for (const IcicleBox& box : layout_.Boxes(number)) {
      WriteBox(number, box, x, width);
    }
  }

  void WriteStackLine(size_t number) {
    if (const std::optional<double> top = layout_.StackLine(number)) {
      const double left = layout_.LeftOf(number);
      output_.Write(fmt::format("<path class=\"stack\" d=\"M{:.0f} {:.1f}H{:.0f}\"/>\n", left, *top,
                                left + layout_.Measures().columnWidth));
    }
  }

 private:
  void WriteBox(size_t number, const IcicleBox& box, double x, double width) {
    output_.Write(fmt::format(
        "<g class=\"{}\"><title>{}</title><rect x=\"{:.0f}\" y=\"{:.1f}\" width=\"{:.0f}\" "
        "height=\"{:.1f}\"/>",
        ClassOf(box.kind), HtmlText(layout_.Text(number, box)), x, box.top, width, box.height));
    double baseline = box.top + kLineHeight - 3;
    if (baseline + 2 <= box.top + box.height) {
      for (const std::string& line : layout_.Lines(number, box)) {
        if (baseline + 2 > box.top + box.height) {
          break;
        }
        output_.Write(fmt::format(R"(<text x="{:.0f}" y="{:.1f}">{}</text>)", x + kGap, baseline,
                                  Fitting(line, width - 2 * kGap, kCharacterWidth)));
        baseline += kLineHeight;
      }
    }
    output_.Write("</g>\n");
  }

  const IcicleLayout& layout_;
  ResultOutput& output_;
};

}  // namespace

void WriteIcicleSvg(const IcicleLayout& layout, const std::function<std::string(size_t)>& targetOf,
                    ResultOutput& output) {
  SvgOutput svg(layout, output);
  svg.WriteStart("");
  svg.WriteHatch();
  svg.WriteTicks();
  for (size_t i = 0; i < layout.Shown().columns.size(); ++i) {
    output.Write(fmt::format("<a href=\"#{}\" aria-label=\"{}\">\n", targetOf(i),
                             HtmlText(fmt::format(fmt::runtime(layout.Words().bytes),
                                                  layout.Name(i), layout.Known(i)))));
    svg.WriteColumn(i);
    output.Write("</a>\n");
    svg.WriteStackLine(i);
  }
  output.Write("</svg>\n");
}

void WriteIcicleFile(const IcicleLayout& layout, ResultOutput& output) {
  SvgOutput svg(layout, output);
  output.Write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
  svg.WriteStart(" xmlns=\"http://www.w3.org/2000/svg\"");
  output.Write(fmt::format("<style>\n{}</style>\n", embedded::icicleStyle));
  svg.WriteHatch();
  output.Write("<rect class=\"blank\" width=\"100%\" height=\"100%\"/>\n");
  svg.WriteTicks();
  for (size_t i = 0; i < layout.Shown().columns.size(); ++i) {
    svg.WriteColumn(i);
    svg.WriteStackLine(i);
  }
  output.Write("</svg>\n");
}

std::string_view IcicleStyle() {
  return embedded::icicleStyle;
}

}  // namespace velkor::reports
