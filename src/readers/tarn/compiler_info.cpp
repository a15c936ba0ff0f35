#include "readers/tarn/compiler_info.h"

namespace velkor {

namespace {

constexpr uint32_t kSeriesTarn = 1;
constexpr uint32_t kSeriesTarnS = 2;
constexpr uint32_t kSeriesTarnR = 3;

}  // namespace

bool StkCompilerInfo::AdoptOrMatch(uint32_t& field, uint32_t value) {
  if (field == 0) {
    field = value;
  }
  return field == value;
}

bool StkCompilerInfo::RuntimeHelpersAccepted() const {
  switch (series) {
    case kSeriesTarn:
      return version >= 0x330;
    case kSeriesTarnS:
      return version >= 0x130;
    default:
      return true;
  }
}

bool StkCompilerInfo::OldStackFigure() const {
  switch (series) {
    case kSeriesTarn:
      return version < 0x370;
    case kSeriesTarnS:
      return version < 0x160;
    default:
      return false;
  }
}

std::string StkCompilerInfo::VersionText() const {
  constexpr std::string_view kDigits = "0123456789abcdef";
  return std::to_string((version >> 8) & 0xF) + "." + kDigits[(version >> 4) & 0xF] +
         kDigits[version & 0xF];
}

uint32_t StkCompilerInfo::SeriesCode(std::string_view familyName) {
  if (familyName == "Tarn") {
    return kSeriesTarn;
  }
  if (familyName == "TarnS") {
    return kSeriesTarnS;
  }
  return familyName == "TarnR" ? kSeriesTarnR : 0;
}

}  // namespace velkor
