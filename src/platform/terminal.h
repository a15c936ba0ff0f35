#pragma once

#include <cstddef>

namespace velkor {

// Gives the program its three standard streams: one that the caller has closed fails on use
// instead of naming the next file that is opened, and writing to a reader that has gone is an
// error like any other instead of the program's end. To be called first.
void PrepareStandardStreams();
bool IsErrorTerminal();
// Standard error is a terminal that can be drawn on, and the user has nothing against it (NO_COLOR,
// TERM=dumb). At the start, when there is one thread.
bool MayDrawOnErrorTerminal();
bool IsOutputTerminal();
// Characters of one line of standard error's terminal; 80 where it is not known.
size_t ErrorTerminalWidth();

}  // namespace velkor
