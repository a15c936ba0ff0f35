// Stands for the parts of the compiler's library that samples.cc calls, where there is none.
#define APART __attribute__((noinline, noclone))

volatile int state;

extern "C" {
APART void* __cxa_allocate_exception(unsigned) {
  return const_cast<int*>(&state);
}
APART void* __cxa_begin_catch(void* thrown) {
  return thrown;
}
APART void __cxa_end_catch() {
  state = 1;
}
APART void __cxa_free_exception(void*) {
  state = 2;
}
[[noreturn]] APART void __cxa_throw(void*, void*, void (*)(void*)) {
  for (;;)
    state = 3;
}
[[noreturn]] APART void __cxa_rethrow() {
  for (;;)
    state = 4;
}
[[noreturn]] APART void __cxa_end_cleanup() {
  for (;;)
    state = 5;
}
}
namespace std {
[[noreturn]] APART void terminate() noexcept {
  for (;;)
    state = 6;
}
}  // namespace std
APART void* operator new(decltype(sizeof 0)) {
  return const_cast<int*>(&state);
}
APART void operator delete(void*, decltype(sizeof 0)) noexcept {
  state = 7;
}
APART void operator delete(void*) noexcept {
  state = 8;
}
