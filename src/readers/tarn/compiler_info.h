#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velkor {

// Series and version of the compiler that wrote a module. A version digit.digit digit is held one
// digit in four bits: 3.70 is 0x370.
struct StkCompilerInfo {
  uint32_t series = 0;   // 0 while unknown
  uint32_t version = 0;  // 0 while unknown

  // An unknown field takes the value and matches; else whether it equals the value.
  bool AdoptOrMatchSeries(uint32_t value) { return AdoptOrMatch(series, value); }
  bool AdoptOrMatchVersion(uint32_t value) { return AdoptOrMatch(version, value); }
  bool RuntimeHelpersAccepted() const;
  // The module's stack figures contain what the prologue helper takes.
  bool OldStackFigure() const;
  // "3.70"
  std::string VersionText() const;

  // "Tarn" 1, "TarnS" 2, "TarnR" 3, any other 0.
  static uint32_t SeriesCode(std::string_view familyName);

 private:
  static bool AdoptOrMatch(uint32_t& field, uint32_t value);
};

}  // namespace velkor
