#include "support/module_text.h"

#include <sstream>

namespace velkor::testing {

namespace {

struct Words {
  bool isStatic = false;
  bool indirect = false;
  std::string name;
  std::string frame;
  std::vector<std::string> callees;
};

Words Split(const std::string& line) {
  std::istringstream in(line);
  Words words;
  while (in >> words.name) {
    if (words.name == "static") {
      words.isStatic = true;
    } else if (words.name == "indirect") {
      words.indirect = true;
    } else {
      break;
    }
  }
  in >> words.frame;
  for (std::string callee; in >> callee;) {
    words.callees.push_back(callee);
  }
  return words;
}

}  // namespace

std::string ModuleText(const std::string& file, const std::vector<std::string>& functions) {
  std::string symbols;
  std::string block = "; *** Code Information ***\n; $FILE C:\\p\\" + file + "\n;\n";
  for (const std::string& line : functions) {
    const Words words = Split(line);
    symbols += "$DGS " + std::string(words.isStatic ? "STA_SYM" : "GLV_SYM") + ", _" + words.name +
               ", 0, 0, 0, 0, 0, 02H\n";
    block += "; $FUNC " + words.name + "()\n; CODE SIZE=12 bytes, 0, STACK_SIZE=" + words.frame +
             " bytes\n";
    for (const std::string& callee : words.callees) {
      symbols += "$DGS GLV_SYM, _" + callee + ", 0, 0, 0, 0, 0, 02H\n";
      block += "; $CALL " + callee + "()\n";
    }
    block += words.indirect ? "; $CALL pointer()\n" : "";
  }
  return "; Tarn C Compiler V3.70 Assembler Source\n" + symbols + "@@CODE DSEG\n" + block;
}

}  // namespace velkor::testing
