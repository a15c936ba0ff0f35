#include "bench/generators/program_image.h"

#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

#include "bench/generators/random.h"

namespace velkor::bench {
namespace {

constexpr uint32_t kAddress = 0x8000;

void Append(std::string& bytes, uint64_t value, size_t width) {
  for (size_t i = 0; i < width; ++i) {
    bytes += static_cast<char>(value >> (8 * i));
  }
}

void AppendWords(std::string& bytes, std::initializer_list<uint64_t> words) {
  for (const uint64_t word : words) {
    Append(bytes, word, 4);
  }
}

// The instructions of one function after another, and where they begin.
class CodeAuthor {
 public:
  explicit CodeAuthor(uint64_t seed) : random_(seed) {}

  void WriteFunction() {
    starts.push_back(static_cast<uint32_t>(code.size()));
    const uint32_t frame = 1 + random_.Below(24);
    Half(0xB5F0);          // push {r4-r7, lr}
    Half(0xB080 | frame);  // sub sp, #4 * frame
    for (uint32_t left = 10 + random_.Below(70); left > 0; --left) {
      WriteStep(frame);
    }
    Half(0xB000 | frame);  // add sp, #4 * frame
    Half(0xBDF0);          // pop {r4-r7, pc}
    codeEnds.push_back(static_cast<uint32_t>(code.size()));
    code.append(code.size() % 4, '\0');
    Append(code, random_.Next() & UINT32_MAX, 4);  // a constant
  }

  std::string code;
  std::vector<uint32_t> starts;
  std::vector<uint32_t> codeEnds;

 private:
  void Half(uint32_t half) { Append(code, half, 2); }

  void WriteStep(uint32_t frame) {
    const uint32_t number = random_.Below(8);
    const uint32_t other = random_.Below(8);
    switch (random_.Below(9)) {
      case 0:
        return Half(0x0000 | other << 3 | number);  // movs number, other
      case 1:
        return Half(0x2000 | number << 8 | other);  // movs number, #other
      case 2:
        return Half(0x3000 | number << 8 | other);  // adds number, #other
      case 3:
        return Half(0x9000 | number << 8 | random_.Below(frame));  // str number, [sp, ...]
      case 4:
        return Half(0x9800 | number << 8 | random_.Below(frame));  // ldr number, [sp, ...]
      case 5:
        return Half(0x6800 | other << 3 | number);  // ldr number, [other]
      case 6:
        return WriteBranch();
      case 7:
        return Half(0x4200 | other << 3 | number);  // tst number, other
      default:
        return WriteCall();
    }
  }

  // A loop, or a step that is passed over.
  void WriteBranch() {
    const uint32_t condition = random_.Below(2) << 8;  // equal, not equal
    const bool isLoop = random_.Below(2) == 0;
    Half(0x2805);                                         // cmp r0, #5
    Half(0xD000 | condition | (isLoop ? 0xFDU : 0x00U));  // to the comparison, or behind the next
    Half(0x3001);                                         // adds r0, #1
  }

  void WriteCall() {
    if (starts.size() < 2) {
      return;
    }
    const size_t back =
        1 + random_.Below(static_cast<uint32_t>(std::min<size_t>(starts.size() - 1, 200)));
    const uint32_t target = starts[starts.size() - 1 - back];
    const auto distance = static_cast<uint32_t>(target - (code.size() + 4));
    const uint32_t sign = distance >> 31;
    const uint32_t first = ~((distance >> 23 & 1) ^ sign) & 1;
    const uint32_t second = ~((distance >> 22 & 1) ^ sign) & 1;
    Half(0xF000 | sign << 10 | (distance >> 12 & 0x3FF));
    Half(0xD000 | first << 13 | second << 11 | (distance >> 1 & 0x7FF));
  }

  Random random_;
};

class ImageAuthor {
 public:
  std::string Write(const CodeAuthor& author) {
    AddSymbols(author);
    std::string sections(40, '\0');
    image_.assign(52, '\0');
    AddSection(sections, 1, 1, 6, kAddress, author.code, 0, 0);
    AddSection(sections, 7, 2, 0, 0, symbols_, 3, 16);
    AddSection(sections, 15, 3, 0, 0, names_, 0, 0);
    AddSection(sections, 23, 3, 0, 0, std::string("\0.text\0.symtab\0.strtab\0.shstrtab\0", 33), 0,
               0);
    std::string header(
        "\x7F"
        "ELF\1\1\1",
        7);
    header.append(9, '\0');
    Append(header, 2, 2);
    Append(header, 40, 2);  // ARM
    AppendWords(header, {1, kAddress + 1, 0, image_.size(), 0x5000000});
    for (const uint64_t half : std::initializer_list<uint64_t>{52, 0, 0, 40, 5, 4}) {
      Append(header, half, 2);
    }
    return image_.replace(0, header.size(), header) + sections;
  }

 private:
  void AddSymbol(const std::string& name, uint32_t value, uint32_t size, uint32_t kind) {
    AppendWords(symbols_, {names_.size(), value, size});
    Append(symbols_, kind, 2);
    Append(symbols_, 1, 2);
    names_ += name + '\0';
  }

  void AddSymbols(const CodeAuthor& author) {
    symbols_.assign(16, '\0');
    names_.assign(1, '\0');
    for (size_t i = 0; i < author.starts.size(); ++i) {
      const uint32_t start = author.starts[i];
      AddSymbol("$t", kAddress + start, 0, 0);
      AddSymbol("$d", kAddress + author.codeEnds[i], 0, 0);
    }
    firstGlobal_ = static_cast<uint32_t>(symbols_.size() / 16);
    for (size_t i = 0; i < author.starts.size(); ++i) {
      const uint32_t start = author.starts[i];
      AddSymbol("function_" + std::to_string(i), kAddress + start + 1, author.codeEnds[i] - start,
                0x12);
    }
  }

  void AddSection(std::string& sections, uint32_t name, uint32_t type, uint32_t flags,
                  uint32_t address, const std::string& bytes, uint32_t link, uint32_t entrySize) {
    AppendWords(sections, {name, type, flags, address, image_.size(), bytes.size(), link,
                           link == 0 ? 0 : firstGlobal_, 4, entrySize});
    image_ += bytes;
  }

  std::string image_;
  std::string symbols_;
  std::string names_;
  uint32_t firstGlobal_ = 0;
};

}  // namespace

void WriteProgram(uint64_t bytes, uint64_t seed, ProjectFolder& project) {
  CodeAuthor author(seed);
  while (author.code.size() < bytes) {
    author.WriteFunction();
  }
  project.AddFile("program.elf", ImageAuthor().Write(author));
  const std::string last = "function_" + std::to_string(author.starts.size() - 1);
  project.AddFile("main.ci",
                  "graph: { title: \"main.c\"\n"
                  "node: { title: \"" +
                      last + "\" label: \"" + last +
                      "\\nmain.c:1:5\\n24 bytes (static)\\n0 dynamic objects\" }\n}\n");
  project.AddFile("velkor.toml", "input = \".\"\nelf = \"program.elf\"\n");
}

}  // namespace velkor::bench
