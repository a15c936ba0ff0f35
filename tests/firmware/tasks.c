#include "firmware.h"

uint32_t task_a_stack[128];

void use(volatile void* memory) {
  __asm volatile("" ::"r"(memory) : "memory");
}

// At the deepest place of a task: all that can come comes, and then the other task.
__attribute__((noinline)) static void command_store(int value) {
  volatile int block[10];
  block[0] = value;
  pend_systick();
  yield();
  use(&value);
}

__attribute__((noinline)) static void command_show(int value) {
  use(&value);
}

typedef void (*command)(int);
static const command commands[] = {command_show, command_store};

__attribute__((noinline)) void dispatch(int which, int value) {
  const command* volatile table = commands;
  table[which](value);
  use(&which);
}

void task_a(void) {
  for (int round = 0; round < 4; ++round) {
    dispatch(round & 1, round);
  }
  report();
}

#ifdef __ARM_FP
typedef float number;
#else
typedef int number;
#endif

// Keeps values in the registers that a change of the task has to save.
__attribute__((noinline)) static number weigh(number left, number right) {
  volatile number block[12];
  block[0] = left;
#ifdef __ARM_FP
  __asm volatile("vmov.f32 s20, %0\n vmov.f32 s2, %1" ::"t"(left), "t"(right) : "s2", "s20");
#endif
  pend_systick();
  yield();
  use(block);
  return left * right + block[3];
}

void task_b(void) {
  number sum = 0;
  for (;;) {
    sum += weigh(sum, 2);
    yield();
  }
}
