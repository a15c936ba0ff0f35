#include "firmware.h"

enum { PAINT = 0xA5A5A5A5 };

static void paint(uint32_t* from, const uint32_t* to) {
  while (from < to) {
    *from++ = PAINT;
  }
}

// Of two group priorities: what comes later in the chain interrupts what comes before it.
__attribute__((noinline)) static void in_timer(void) {
  volatile uint32_t block[7];
  block[0] = 7;
}
void timer_irq(void) {
  in_timer();
  use(0);
}

__attribute__((noinline)) static void in_uart(void) {
  volatile uint32_t block[9];
  block[0] = 9;
  pend(TIMER_IRQ);
  use(block);
}
void uart_irq(void) {
  in_uart();
  use(0);
}

// Of the same group priority as the other: waits until that has ended.
void spi_irq(void) {
  volatile uint32_t block[3];
  block[0] = 3;
}

void SysTick_Handler(void) {
  volatile uint32_t block[5];
  block[0] = 5;
  pend(SPI_IRQ);
  pend(UART_IRQ);
  use(block);
}

static void set_priorities(void) {
  REGISTER(0xE000ED0C) = 0x05FA0000 | 5U << 8;  // two bits of group, the rest below it
  REGISTER(0xE000ED1C) = 0xC0000000;            // SVC
  REGISTER(0xE000ED20) = 0xC1C20000;            // SysTick and PendSV
  REGISTER(0xE000E400) = 0x00408180;            // timer, spi, uart
  REGISTER(0xE000E100) = 7;
}

__attribute__((noinline)) static void exercise(void) {
  volatile uint32_t block[16];
  block[0] = 16;
  pend_systick();
  use(block);
}

int main(void) {
  uint32_t here = 0;
  paint(task_a_stack, task_a_stack + 128);
  paint(task_b_stack, task_b_stack + 192);
  paint(__stack_limit, (uint32_t*)((uintptr_t)&here - 64));
  set_priorities();
  exercise();
  start_tasks();
  return 0;
}

static int call_host(int operation, const void* argument) {
  register int r0 __asm("r0") = operation;
  register const void* r1 __asm("r1") = argument;
  __asm volatile("bkpt 0xAB" : "+r"(r0) : "r"(r1) : "memory");
  return r0;
}

// Below 10,000, without a division, which not every one of the processors has.
static void print_number(uint32_t number) {
  static const uint32_t powers[] = {1000, 100, 10, 1};
  char text[2] = {0, 0};
  for (int i = 0; i < 4; ++i) {
    text[0] = '0';
    for (; number >= powers[i]; number -= powers[i]) {
      ++text[0];
    }
    call_host(4, text);
  }
}

static void print_use(const char* name, const uint32_t* from, const uint32_t* to) {
  const uint32_t* lowest = from;
  while (lowest < to && *lowest == PAINT) {
    ++lowest;
  }
  call_host(4, name);
  print_number((uint32_t)((const char*)to - (const char*)lowest));
  call_host(4, "\n");
}

// On the stack of task_a, whose use is known by then.
void report(void) {
  __asm volatile("cpsid i");
  print_use("msp ", __stack_limit, __stack_top);
  print_use("b ", task_b_stack, task_b_stack + 192);
  print_use("a ", task_a_stack, task_a_stack + 128);
  call_host(0x18, (const void*)0x20026);
  for (;;) {
  }
}
