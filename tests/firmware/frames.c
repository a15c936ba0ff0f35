// Prints how many bytes the hardware pushes when an interrupt begins: from a stack pointer that is a
// multiple of 8, and from one that is not; the same after floating point has been used.
#include <stdint.h>

extern uint32_t __stack_top[];
void Reset_Handler(void);
void PendSV_Handler(void);

__attribute__((section(".isr_vector"), used)) static void (*const vectors[])(void) = {
    (void (*)(void))__stack_top, Reset_Handler, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, PendSV_Handler,
};

uint32_t pointer_in_handler;

__attribute__((naked)) void PendSV_Handler(void) {
  __asm volatile(
      "mov r0, sp\n"
      "ldr r1, =pointer_in_handler\n"
      "str r0, [r1]\n"
      "bx lr\n"
      ".ltorg\n");
}

__attribute__((naked)) static uint32_t frame_bytes(uint32_t offset __attribute__((unused))) {
  __asm volatile(
      ".syntax unified\n"
      "push {r4, r5, r6, lr}\n"
      "mov r4, sp\n"
      "mov r5, sp\n"
      "subs r5, r5, r0\n"
      "mov sp, r5\n"
      "ldr r1, =0xE000ED04\n"
      "movs r2, #1\n"
      "lsls r2, r2, #28\n"
      "str r2, [r1]\n"
      "dsb\n"
      "isb\n"
      "mov r0, sp\n"
      "ldr r1, =pointer_in_handler\n"
      "ldr r1, [r1]\n"
      "subs r0, r0, r1\n"
      "mov sp, r4\n"
      "pop {r4, r5, r6, pc}\n"
      ".ltorg\n");
}

static int call_host(int operation, const void* argument) {
  register int r0 __asm("r0") = operation;
  register const void* r1 __asm("r1") = argument;
  __asm volatile("bkpt 0xAB" : "+r"(r0) : "r"(r1) : "memory");
  return r0;
}

static void print(uint32_t number) {
  char text[4] = {0, 0, '\n', 0};
  uint32_t tens = 0;
  for (; number >= 10; number -= 10) {
    ++tens;
  }
  text[0] = (char)('0' + (tens >= 10 ? tens - 10 : tens));
  text[1] = (char)('0' + number);
  call_host(4, tens >= 10 ? "1" : "");
  call_host(4, text);
}

void Reset_Handler(void) {
#ifdef __ARM_FP
  *(volatile uint32_t*)0xE000ED88 |= 0xFU << 20;
  __asm volatile("dsb\n isb" ::: "memory");
#endif
  print(frame_bytes(0));
  print(frame_bytes(4));
#ifdef __ARM_FP
  __asm volatile("vmov s0, %0" ::"r"(0) : "s0");
  print(frame_bytes(0));
  print(frame_bytes(4));
#endif
  call_host(0x18, (const void*)0x20026);
  for (;;) {
  }
}
