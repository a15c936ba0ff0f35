#include "firmware.h"

// Each task's stack pointer while another one runs.
static uint32_t* stack_pointers[2];
static int running;

__attribute__((used, noinline)) uint32_t* next_task(uint32_t* stack_pointer) {
  stack_pointers[running] = stack_pointer;
  running = 1 - running;
  return stack_pointers[running];
}

// Saves what FreeRTOS saves: the registers that the hardware has not pushed, and without floating
// point not what tells how to return.
#ifdef __ARM_FP
enum { SAVED = 9, RETURN_CODE = 8 };

__attribute__((naked)) void PendSV_Handler(void) {
  __asm volatile(
      "mrs r0, psp\n"
      "tst lr, #0x10\n"
      "it eq\n"
      "vstmdbeq r0!, {s16-s31}\n"
      "stmdb r0!, {r4-r11, lr}\n"
      "push {r3, lr}\n"
      "bl next_task\n"
      "pop {r3, lr}\n"
      "ldmia r0!, {r4-r11, lr}\n"
      "tst lr, #0x10\n"
      "it eq\n"
      "vldmiaeq r0!, {s16-s31}\n"
      "msr psp, r0\n"
      "bx lr\n");
}
#else
enum { SAVED = 8 };

__attribute__((naked)) void PendSV_Handler(void) {
  __asm volatile(
      ".syntax unified\n"
      "mrs r0, psp\n"
      "subs r0, #32\n"
      "stmia r0!, {r4-r7}\n"
      "mov r4, r8\n mov r5, r9\n mov r6, r10\n mov r7, r11\n"
      "stmia r0!, {r4-r7}\n"
      "subs r0, #32\n"
      "push {r3, lr}\n"
      "bl next_task\n"
      "adds r0, #16\n"
      "ldmia r0!, {r4-r7}\n"
      "mov r8, r4\n mov r9, r5\n mov r10, r6\n mov r11, r7\n"
      "msr psp, r0\n"
      "subs r0, #32\n"
      "ldmia r0!, {r4-r7}\n"
      "pop {r3, pc}\n");
}
#endif

// The registers of the first task are of no account.
__attribute__((naked)) void SVC_Handler(void) {
  __asm volatile(
      ".syntax unified\n"
      "ldr r0, =first_stack_pointer\n"
      "ldr r0, [r0]\n"
      "adds r0, %0\n"
      "msr psp, r0\n"
      "movs r0, #2\n"
      "mvns r0, r0\n"
      "bx r0\n"
      ".ltorg\n" ::"i"(SAVED * 4));
}

uint32_t* first_stack_pointer;

// As if the task had been interrupted before its first instruction. As FreeRTOS does, the last word
// of the stack is left free, and what the alignment asks for.
static uint32_t* prepare(uint32_t* top, void (*task)(void)) {
  uint32_t* registers = top - 2 - 8 - SAVED;
  for (int i = 0; i < 8 + SAVED; ++i) {
    registers[i] = 0;
  }
#ifdef __ARM_FP
  registers[RETURN_CODE] = 0xFFFFFFFD;
#endif
  registers[SAVED + 6] = (uint32_t)task;
  registers[SAVED + 7] = 1U << 24;
  return registers;
}

void start_tasks(void) {
  first_stack_pointer = prepare(task_a_stack + 128, task_a);
  stack_pointers[1] = prepare(task_b_stack + 192, task_b);
  running = 0;
  __asm volatile("svc 0" ::: "memory");
}
