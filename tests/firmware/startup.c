#include "firmware.h"

int main(void);

// The stack pointer stands at the top; nothing else is to be prepared.
void Reset_Handler(void) {
#ifdef __ARM_FP
  REGISTER(0xE000ED88) |= 0xFU << 20;  // floating point may be used
  __asm volatile("dsb\n isb" ::: "memory");
#endif
  main();
  for (;;) {
  }
}

void Default_Handler(void) {
  for (;;) {
  }
}

#define OTHERWISE_DEFAULT __attribute__((weak, alias("Default_Handler")))

void NMI_Handler(void) OTHERWISE_DEFAULT;
void HardFault_Handler(void) OTHERWISE_DEFAULT;
void SVC_Handler(void) OTHERWISE_DEFAULT;
void PendSV_Handler(void) OTHERWISE_DEFAULT;
void SysTick_Handler(void) OTHERWISE_DEFAULT;
void uart_irq(void) OTHERWISE_DEFAULT;
void spi_irq(void) OTHERWISE_DEFAULT;
void timer_irq(void) OTHERWISE_DEFAULT;
void can_irq(void) OTHERWISE_DEFAULT;

__attribute__((section(".isr_vector"), used)) static void (*const vectors[])(void) = {
    (void (*)(void))__stack_top,
    Reset_Handler,
    NMI_Handler,
    HardFault_Handler,
    0, 0, 0, 0, 0, 0, 0,
    SVC_Handler,
    0, 0,
    PendSV_Handler,
    SysTick_Handler,
    uart_irq,
    spi_irq,
    timer_irq,
    can_irq,
};
