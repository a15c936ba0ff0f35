#pragma once

#include <string>
#include <string_view>

namespace velkor {

// The names of files that are to take the place of another once they are complete: its name, or the
// beginning of a long one, and a tail of their own.

// ".", 16 digits that no other file has at the same time, ".tmp".
std::string TemporaryTail();
// Whether a file of that name may have been made for the one named or for a copy of it ("app.psg"
// and "app.psg.bak2"). Both in the same encoding.
bool IsTemporaryOf(std::string_view found, std::string_view name);

}  // namespace velkor
