file(READ ${INPUT} bytes HEX)
string(LENGTH "${bytes}" digits)
math(EXPR length "${digits} / 2")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
string(REGEX REPLACE "(................................................................................)" "\\1\n" bytes "${bytes}")
file(WRITE ${OUTPUT}
"#include <string_view>
namespace velkor::embedded {
extern const std::string_view ${SYMBOL};
namespace {
constexpr unsigned char ${SYMBOL}Bytes[] = {
${bytes}0x00};
}
const std::string_view ${SYMBOL}{reinterpret_cast<const char*>(${SYMBOL}Bytes), ${length}};
}
")
