// charset_tables FILE: writes the character sets that the C library of this machine knows, of those
// that velkor reads, as the tables of platform/tables/charset_tables.h. A tool of the build.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iconv.h>
#include <optional>
#include <string>
#include <string_view>

namespace {

const char* const kSingleByteSets[] = {
    "CP437",       "CP737",       "CP775",       "CP850",       "CP852",       "CP855",
    "CP857",       "CP858",       "CP860",       "CP861",       "CP862",       "CP863",
    "CP864",       "CP865",       "CP866",       "CP869",       "CP874",       "CP1250",
    "CP1251",      "CP1252",      "CP1253",      "CP1254",      "CP1255",      "CP1256",
    "CP1257",      "CP1258",      "ISO-8859-1",  "ISO-8859-2",  "ISO-8859-3",  "ISO-8859-4",
    "ISO-8859-5",  "ISO-8859-6",  "ISO-8859-7",  "ISO-8859-8",  "ISO-8859-9",  "ISO-8859-10",
    "ISO-8859-11", "ISO-8859-13", "ISO-8859-14", "ISO-8859-15", "ISO-8859-16", "KOI8-R",
    "KOI8-U",      "MACINTOSH",   "TIS-620"};
constexpr uint16_t kNone = 0xFFFD;

// From one set to another, a character at a time.
class Conversion {
 public:
  Conversion(const char* from, const char* to) : descriptor_(iconv_open(to, from)) {}
  ~Conversion() {
    if (IsOpen()) {
      iconv_close(descriptor_);
    }
  }
  Conversion(const Conversion&) = delete;
  Conversion& operator=(const Conversion&) = delete;

  bool IsOpen() const { return reinterpret_cast<intptr_t>(descriptor_) != -1; }

  // None for what is no whole character, or has no place in the other set.
  std::optional<std::string> Of(std::string character) {
    char buffer[16];
    char* input = character.data();
    size_t inputLeft = character.size();
    char* output = buffer;
    size_t outputLeft = sizeof buffer;
    iconv(descriptor_, nullptr, nullptr, nullptr, nullptr);
    constexpr auto kFailed = static_cast<size_t>(-1);
    if (iconv(descriptor_, &input, &inputLeft, &output, &outputLeft) == kFailed ||
        iconv(descriptor_, nullptr, nullptr, &output, &outputLeft) == kFailed) {
      return std::nullopt;
    }
    return std::string(buffer, sizeof buffer - outputLeft);
  }

 private:
  iconv_t descriptor_;
};

unsigned Number(const std::string& bytes) {
  unsigned number = 0;
  for (const char byte : bytes) {
    number = number * 256 + static_cast<unsigned char>(byte);
  }
  return number;
}

// Of text in UTF-16BE; none unless it is one unit.
unsigned Unit(const std::optional<std::string>& text) {
  return text && text->size() == 2 ? Number(*text) : kNone;
}

bool WriteSingleByteSet(std::ostream& file, const char* name, unsigned number) {
  Conversion conversion(name, "UTF-16BE");
  if (!conversion.IsOpen()) {
    std::fprintf(stderr, "charset_tables: this machine does not know %s\n", name);
    return false;
  }
  file << "constexpr char16_t kSet" << number << "[256] = {";
  for (unsigned byte = 0; byte < 256; ++byte) {
    file << Unit(conversion.Of(std::string(1, static_cast<char>(byte)))) << ',';
  }
  file << "};\n";
  return true;
}

std::string Bytes(unsigned number) {
  std::string bytes;
  if (number > 0xFF) {
    bytes += static_cast<char>(number >> 8U);
  }
  return bytes + static_cast<char>(number & 0xFFU);
}

bool WriteShiftJis(std::ostream& file) {
  Conversion toUnicode("CP932", "UTF-16BE");
  Conversion fromUnicode("UTF-16BE", "CP932");
  if (!toUnicode.IsOpen() || !fromUnicode.IsOpen()) {
    std::fputs("charset_tables: this machine does not know CP932\n", stderr);
    return false;
  }
  file << "constexpr ShiftJisCharacter kFromShiftJis[] = {";
  for (unsigned bytes = 0; bytes < 0x10000; ++bytes) {
    const unsigned unit = Unit(toUnicode.Of(Bytes(bytes)));
    if (unit != kNone) {
      file << '{' << bytes << ',' << unit << "},";
    }
  }
  file << "};\nconstexpr ShiftJisCharacter kToShiftJis[] = {";
  for (unsigned unit = 0; unit < 0x10000; ++unit) {
    const std::string text{static_cast<char>(unit >> 8U), static_cast<char>(unit & 0xFFU)};
    const std::optional<std::string> bytes = fromUnicode.Of(text);
    if (bytes && !bytes->empty() && bytes->size() <= 2) {
      file << '{' << Number(*bytes) << ',' << unit << "},";
    }
  }
  file << "};\n";
  return true;
}

bool WriteAll(std::ostream& file) {
  file << "#include \"platform/tables/charset_tables.h\"\n\nnamespace velkor {\nnamespace {\n";
  std::string list;
  unsigned number = 0;
  for (const char* const name : kSingleByteSets) {
    if (!WriteSingleByteSet(file, name, number)) {
      return false;
    }
    list += "{\"" + std::string(name) + "\",kSet" + std::to_string(number++) + "},";
  }
  if (!WriteShiftJis(file)) {
    return false;
  }
  file << "constexpr SingleByteTable kTables[] = {" << list
       << "};\n}\nconst std::span<const SingleByteTable> kSingleByteTables = kTables;\n"
          "const std::span<const ShiftJisCharacter> kShiftJisToUnicode = kFromShiftJis;\n"
          "const std::span<const ShiftJisCharacter> kUnicodeToShiftJis = kToShiftJis;\n}\n";
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("charset_tables FILE\n", stderr);
    return 1;
  }
  std::ofstream file(argv[1]);
  const bool written = WriteAll(file);
  file.close();
  return written && file ? 0 : 1;
}
