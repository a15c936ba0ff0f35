#include "ui/picture/picture_report.h"

#include "reports/icicle_svg.h"
#include "reports/result_file.h"

namespace velkor::ui {

void WritePicture(UiContext& context, const reports::IcicleLayout& layout,
                  const std::string& path) {
  if (context.document.MayWriteTo(path)) {
    reports::WriteResultFile(path, context.host, context.reporter,
                             [&layout](reports::ResultOutput& output) {
                               reports::WriteIcicleFile(layout, output);
                             });
  }
}

}  // namespace velkor::ui
