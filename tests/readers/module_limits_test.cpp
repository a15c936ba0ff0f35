#include <algorithm>

#include "readers/module_reading.h"

namespace velkor {
namespace {

using testing::kAborted;
using testing::ModuleReading;
using testing::ModuleText;
using Lines = std::vector<std::string>;

std::string TooLong(uint32_t line) {
  return "W9405 Too many characters in one line in file (C:\\p\\m.asm:line " +
         std::to_string(line) + ").\nThe limit is 5119.";
}

std::string EmptyLines(size_t count) {
  return std::string(count, '\n');
}

TEST(ModuleLimits, LinesOfAFile) {
  ModuleReading fits;
  ModuleText module;
  const std::string text = module.All();
  const auto used = static_cast<size_t>(std::count(text.begin(), text.end(), '\n'));
  EXPECT_TRUE(fits.Read(text + EmptyLines(StkAsmModuleReader::kMaxLines - used)));
  EXPECT_EQ(fits.Log(), Lines());

  ModuleReading tooMany;
  EXPECT_FALSE(tooMany.Read(text + EmptyLines(StkAsmModuleReader::kMaxLines - used) + "x"));
  EXPECT_EQ(tooMany.Log(), Lines({"W9406 Too many lines in file (C:\\p\\m.asm).\nThe limit is "
                                  "65535."}));
  EXPECT_EQ(tooMany.BoxCount(), 1U);
  EXPECT_FALSE(tooMany.aborted);
  EXPECT_EQ(tooMany.functions.Count(), 1U);
}

// A "CODE SIZE=" line of the given length whose figure stands right at its end.
std::string SizeLine(size_t length) {
  const std::string start = "; CODE SIZE=";
  const std::string end = ",0,STACK_SIZE=10 bytes";
  return start + std::string(length - start.size() - end.size(), '9') + end + "\n";
}

TEST(ModuleLimits, CharactersOfALine) {
  const auto countOf = [](const std::string& sizeLine, Lines& log) {
    ModuleReading reading;
    ModuleText module;
    module.functions = "; $FUNC f()\n" + sizeLine;
    EXPECT_TRUE(reading.Read(module.All()));
    EXPECT_EQ(reading.BoxCount(), 0U);
    log = reading.Log();
    return reading.functions.Count();
  };
  Lines log;
  EXPECT_EQ(countOf(SizeLine(5118), log), 1U);
  EXPECT_EQ(log, Lines());
  EXPECT_EQ(countOf(SizeLine(5119), log), 0U);  // its last character is lost, silently
  EXPECT_EQ(log, Lines());
  EXPECT_EQ(countOf(SizeLine(5120), log), 0U);
  EXPECT_EQ(log, Lines({TooLong(10)}));
  EXPECT_EQ(countOf(SizeLine(5118).substr(0, 5118) + std::string(882, ' '), log), 1U);
  EXPECT_EQ(log, Lines({TooLong(10)}));
}

TEST(ModuleLimits, StopsAtTheNextHundredthLine) {
  ModuleText module;
  const std::string function = module.functions;
  module.functions.clear();
  const std::string text = module.All();
  const auto used = static_cast<size_t>(std::count(text.begin(), text.end(), '\n'));
  const auto readUpTo = [&](size_t last) {
    ModuleReading reading;
    reading.stopped = true;
    const bool whole = reading.Read(text + EmptyLines(last - used - 2) + function);
    EXPECT_EQ(reading.aborted, !whole);
    EXPECT_EQ(reading.Log(), whole ? Lines() : Lines({kAborted}));
    return reading.functions.Count();
  };
  EXPECT_EQ(readUpTo(99), 1U);
  EXPECT_EQ(readUpTo(100), 0U);  // the hundredth line is not handled any more
  EXPECT_EQ(readUpTo(250), 0U);
}

}  // namespace
}  // namespace velkor
