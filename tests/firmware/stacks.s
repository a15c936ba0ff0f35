@ A stack that an assembler lays out: its symbol has no size.
  .syntax unified
  .bss
  .align 3
  .global task_b_stack
  .global task_b_top
task_b_stack:
  .space 768
task_b_top:
