#include "bench/generators/module_text.h"

#include <algorithm>

namespace velkor::bench {
namespace {

uint32_t CountLines(std::string_view text) {
  return static_cast<uint32_t>(std::count(text.begin(), text.end(), '\n'));
}

}  // namespace

ModuleText::ModuleText(std::string_view sourcePath) {
  symbols_ =
      "; Ta/rn Series C Compiler V3.70 Assembler Source\n"
      "\n";
  code_ =
      "\n"
      "@@DATA\tDSEG\n"
      "@@CODE\tCSEG\n";
  information_ =
      "\tEND\n"
      "\n"
      "; *** Code Information ***\n"
      ";\n"
      "; $FILE ";
  information_ += sourcePath;
  information_ += "\n;\n";
  lineCount_ = CountLines(symbols_) + CountLines(code_) + CountLines(information_);
}

void ModuleText::DeclareFunction(std::string_view name, Linkage linkage) {
  symbols_ += linkage == Linkage::kStatic ? "$DGS STA_SYM, _" : "$DGS GLV_SYM, _";
  symbols_ += name;
  symbols_ += ", U, U, 00H, 026H, 01H, 02H\n";
  ++lineCount_;
}

void ModuleText::DeclareVariable(std::string_view name) {
  symbols_ += "$DGS GLV_SYM, _";
  symbols_ += name;
  symbols_ += ", U, U, 00H, 026H, 01H, 08H\n";
  ++lineCount_;
}

void ModuleText::AddLabel(std::string_view name) {
  code_ += '_';
  code_ += name;
  code_ += ":\n";
  ++lineCount_;
}

void ModuleText::AddCode(std::string_view line) {
  code_ += line;
  code_ += '\n';
  ++lineCount_;
}

void ModuleText::DescribeFunction(std::string_view name, uint32_t frameSize) {
  information_ += "; $FUNC ";
  information_ += name;
  information_ += "(1)\n;\tCODE SIZE= 67 bytes, CLOCK_SIZE= 201 clocks, STACK_SIZE= ";
  information_ += std::to_string(frameSize);
  information_ += " bytes\n";
  lineCount_ += 2;
}

void ModuleText::DescribeCall(std::string_view name) {
  information_ += "; $CALL ";
  information_ += name;
  information_ += "(ax)\n";
  ++lineCount_;
}

}  // namespace velkor::bench
