#include "firmware.h"

// Each task's stack pointer while another one runs.
static uint32_t* stack_pointers[2];
static int running;

__attribute__((used, noinline)) uint32_t* next_task(uint32_t* stack_pointer) {
  stack_pointers[running] = stack_pointer;
  running = 1 - running;
  return stack_pointers[running];
}

// Pushes what the hardware has not pushed, and goes on with the other task.
__attribute__((naked)) void PendSV_Handler(void) {
  __asm volatile(
      "mrs r0, psp\n"
#ifdef __ARM_FP
      "tst lr, #0x10\n"
      "it eq\n"
      "vstmdbeq r0!, {s16-s31}\n"
#endif
      "stmdb r0!, {r4-r11, lr}\n"
      "push {r3, lr}\n"
      "bl next_task\n"
      "pop {r3, lr}\n"
      "ldmia r0!, {r4-r11, lr}\n"
#ifdef __ARM_FP
      "tst lr, #0x10\n"
      "it eq\n"
      "vldmiaeq r0!, {s16-s31}\n"
#endif
      "msr psp, r0\n"
      "bx lr\n");
}

__attribute__((naked)) void SVC_Handler(void) {
  __asm volatile(
      "ldr r0, =first_stack_pointer\n"
      "ldr r0, [r0]\n"
      "ldmia r0!, {r4-r11, lr}\n"
      "msr psp, r0\n"
      "bx lr\n");
}

uint32_t* first_stack_pointer;

// As if the task had been interrupted before its first instruction.
static uint32_t* prepare(uint32_t* top, void (*task)(void)) {
  uint32_t* registers = top - 17;
  for (int i = 0; i < 17; ++i) {
    registers[i] = 0;
  }
  registers[8] = 0xFFFFFFFD;
  registers[15] = (uint32_t)task;
  registers[16] = 1U << 24;
  return registers;
}

void start_tasks(void) {
  first_stack_pointer = prepare(task_a_stack + 128, task_a);
  stack_pointers[1] = prepare(task_b_stack + 192, task_b);
  running = 0;
  __asm volatile("svc 0" ::: "memory");
}
