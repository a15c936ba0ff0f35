#pragma once

namespace velkor {

// Prepares the heap for a program that runs one large job and ends: one arena for all threads, in
// large pages where the machine has them, and hardly anything given back on the way. Called once at
// the start of main, before any thread. Without effect where the machine refuses it or limits the
// program's addresses; then everything works the same, only slower.
void PrepareHeapForOneRun();

}  // namespace velkor
