#pragma once

#include <string>
#include <string_view>

namespace velkor {

// What a mangled symbol of C++ says, "Buffer::put(char)"; empty for every other symbol, and for one
// whose text would be very long.
std::string DemangledName(std::string_view symbol);

// The symbol that a thunk of C++ jumps to ("_ZThn8_N1D1fEi" to "_ZN1D1fEi"); empty for every other
// symbol, and for a thunk that calls and returns.
std::string ThunkTarget(std::string_view symbol);

// The symbol that the compiler made a clone of ("step" of "step.part.0.isra.1"); empty for every
// other symbol.
std::string_view CloneBase(std::string_view symbol);

}  // namespace velkor
