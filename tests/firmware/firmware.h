#ifndef FIRMWARE_H
#define FIRMWARE_H

#include <stdint.h>

#define REGISTER(address) (*(volatile uint32_t*)(address))

enum { UART_IRQ = 0, SPI_IRQ = 1, TIMER_IRQ = 2 };

// Brings an interrupt about; it comes before the next instruction when its priority lets it.
static inline void pend(int irq) {
  REGISTER(0xE000E200) = 1U << irq;
  __asm volatile("dsb\n isb" ::: "memory");
}
static inline void pend_systick(void) {
  REGISTER(0xE000ED04) = 1U << 26;
  __asm volatile("dsb\n isb" ::: "memory");
}
static inline void yield(void) {
  REGISTER(0xE000ED04) = 1U << 28;
  __asm volatile("dsb\n isb" ::: "memory");
}

extern uint32_t task_a_stack[128];
extern uint32_t task_b_stack[192];  // of an assembler, without a size
extern uint32_t __stack_limit[];
extern uint32_t __stack_top[];

void task_a(void);
void task_b(void);
void start_tasks(void);
void report(void) __attribute__((noreturn));

// Keeps the compiler from leaving things out.
void use(volatile void* memory);

#endif
