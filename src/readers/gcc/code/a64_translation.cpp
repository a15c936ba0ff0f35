#include "readers/gcc/code/a64_translation.h"

#include <span>

#include "readers/gcc/code/a64_forms.h"

namespace velkor {
namespace a64_forms {
namespace {

struct Form {
  uint32_t mask;
  uint32_t bits;
  CodeInstruction (*translate)(Encoding);
};

// The first one that fits counts.
constexpr Form kNumbers[] = {
    {0x1F000000, 0x10000000, Address},        // adr, adrp
    {0x1F800000, 0x11000000, AddNumber},      // add, sub, cmp
    {0xBFC00000, 0x91800000, AddTag},         // addg, subg
    {0x7FF00000, 0x11C00000, WritesFirst},    // smax, umax, smin, umin
    {0x1F800000, 0x12000000, LogicalNumber},  // and, orr, eor, tst
    {0x1F800000, 0x12800000, MoveWide},       // movn, movz, movk
    {0x1F800000, 0x13000000, BitField},       // shifts, extensions
    {0xFF80001F, 0xF380001F, Nothing},        // autiasppc
    {0x7FA00000, 0x13800000, WritesFirst},    // extr
};

constexpr Form kFlow[] = {
    {0xFC000000, 0x14000000, Jump},
    {0xFC000000, 0x94000000, Call},
    {0xFF000000, 0x54000000, JumpIf},
    {0x7E000000, 0x34000000, JumpIfZero},
    {0x7E000000, 0x36000000, JumpIfBit},
    {0xFFFFFC1F, 0xD61F0000, JumpToRegister},   // br
    {0xFFFFF81F, 0xD61F081F, JumpToRegister},   // braaz, brabz
    {0xFFFFF800, 0xD71F0800, JumpToRegister},   // braa, brab
    {0xFFFFFC1F, 0xD63F0000, CallRegister},     // blr
    {0xFFFFF81F, 0xD63F081F, CallRegister},     // blraaz, blrabz
    {0xFFFFF800, 0xD73F0800, CallRegister},     // blraa, blrab
    {0xFFFFFC1F, 0xD65F0000, JumpToRegister},   // ret
    {0xFFFFFBE0, 0xD65F0BE0, ReturnToLink},     // retaa, retab, retaasppcr
    {0xFFC0001F, 0x5500001F, ReturnToLink},     // retaasppc
    {0xFFFFFFFF, 0xD69F03E0, Stop},             // eret
    {0xFFFFFBFF, 0xD69F0BFF, Stop},             // eretaa, eretab
    {0xFFFFFFFF, 0xD6BF03E0, Stop},             // drps
    {0xFFE0001F, 0xD4000001, SystemCall},       // svc
    {0xFFE0001F, 0xD4000002, SystemCall},       // hvc
    {0xFFE0001F, 0xD4000003, SystemCall},       // smc
    {0xFFE0001F, 0xD4400000, SystemCall},       // hlt
    {0xFFE0001F, 0xD4200000, Break},            // brk
    {0xFFFFF01F, 0xD503201F, Hint},             // nop, bti, paciasp
    {0xFFFFFFC0, 0xD5031000, Nothing},          // wfet, wfit
    {0xFFFFF01F, 0xD503301F, Nothing},          // dmb, dsb, isb, clrex
    {0xFFF8F01F, 0xD500401F, WriteState},       // msr of a field
    {0xFFFFFFE0, 0xD5184200, ChooseStack},      // msr spsel
    {0xFFF00000, 0xD5100000, FlagsOnly},        // msr
    {0xFFF00000, 0xD5300000, WritesFirst},      // mrs
    {0xFFF80000, 0xD5080000, SystemOperation},  // dc, ic, tlbi
    {0xFFF80000, 0xD5280000, WritesFirst},      // sysl
    {0xFFFFFEE0, 0xD5233060, WritesFirst},      // tstart, ttest
};

constexpr Form kMemory[] = {
    {0x3A000000, 0x28000000, Pair},         {0x3B000000, 0x39000000, AtNumber},
    {0x3B200000, 0x38000000, AtDistance},   {0x3B200C00, 0x38200800, AtIndex},
    {0x3B000000, 0x18000000, LoadLiteral},  {0x3F000000, 0x08000000, Exclusive},
    {0x3F200C00, 0x38200000, Atomic},       {0xFF200400, 0xF8200400, LoadAuthenticated},
    {0x3F200C00, 0x19000000, Ordered},      {0x3B200C00, 0x19000400, CopyMemory},
    {0xFF200000, 0xD9200000, Tags},         {0xBFBF0000, 0x0C000000, Structures},
    {0xBFA00000, 0x0C800000, Structures},   {0xBF9F0000, 0x0D000000, OneStructure},
    {0xBF800000, 0x0D800000, OneStructure},
};

constexpr Form kRegisters[] = {
    {0x1F200000, 0x0B000000, AddShifted},   {0x1FE00000, 0x0B200000, AddExtended},
    {0x1F000000, 0x0A000000, Logical},      {0x1FE00000, 0x1A800000, WritesFirst},  // csel
    {0x1F000000, 0x1B000000, WritesFirst},                                          // madd
    {0x3FE00410, 0x3A400000, FlagsOnly},                                            // ccmp, ccmn
    {0x5FE00000, 0x1AC00000, TwoSources},    // udiv, shifts by registers
    {0x7FE00000, 0x5AC00000, OneSource},     // rev, clz, pacia
    {0x1FE0FC00, 0x1A000000, AddWithCarry},  // adc, sbc
    {0xFFE07C10, 0xBA000400, FlagsOnly},     // rmif
    {0xFFFFBC1F, 0x3A00080D, FlagsOnly},     // setf8, setf16
    {0xBFE0E000, 0x9A002000, AddTag},        // addpt, subpt
};

constexpr Form kVectors[] = {
    {0x5F20FC00, 0x1E200000, ConvertNumber}, {0x5F200000, 0x1E000000, ConvertFixed},
    {0xBFE0FC00, 0x0E003C00, WritesFirst},  // umov
    {0xBFE0FC00, 0x0E002C00, WritesFirst},  // smov
    {0xFF203C07, 0x1E202000, FlagsOnly},    // fcmp
    {0xFF200C00, 0x1E200400, FlagsOnly},    // fccmp
    {0x00000000, 0x00000000, Nothing},
};

constexpr Form kScalableVectors[] = {{0x00000000, 0x00000000, Scalable}};

constexpr Form kReserved[] = {{0xFFFF0000, 0x00000000, Stop}};  // udf

// The forms of the group that bits 25 to 28 name.
std::span<const Form> Group(uint32_t number) {
  constexpr uint32_t kScalable = 2;
  constexpr uint32_t kFirstNumbers = 8;
  constexpr uint32_t kFirstFlow = 10;
  if (number == 0) {
    return kReserved;
  }
  if (number == kScalable) {
    return kScalableVectors;
  }
  if ((number & 14U) == kFirstNumbers) {
    return kNumbers;
  }
  if ((number & 14U) == kFirstFlow) {
    return kFlow;
  }
  if ((number & 5U) == 4) {
    return kMemory;
  }
  if ((number & 7U) == 5) {
    return kRegisters;
  }
  return (number & 7U) == 7 ? std::span<const Form>(kVectors) : std::span<const Form>();
}

}  // namespace
}  // namespace a64_forms

CodeInstruction TranslateA64(uint32_t bits) {
  const a64_forms::Encoding encoding{bits};
  const uint32_t group = encoding.Field(25, 4);
  CodeInstruction instruction;
  for (const a64_forms::Form& form : a64_forms::Group(group)) {
    if ((bits & form.mask) == form.bits) {
      instruction = form.translate(encoding);
      break;
    }
  }
  constexpr uint32_t kScalable = 2;
  instruction.usesFloatingPoint =
      instruction.usesFloatingPoint || (group & 7U) == 7 || group == kScalable;
  instruction.length = 4;
  return instruction;
}

}  // namespace velkor
