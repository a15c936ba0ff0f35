/* One function a difficulty of reading frames, calls and targets from instructions. */
#include <setjmp.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#define APART __attribute__((noinline, noclone))

volatile int sink;
int (*volatile pointer)(int);

APART int leaf(int a) { return a * 3 + 1; }

APART int with_array(int a) {
  volatile int b[40];
  b[a & 31] = a;
  return leaf(b[3]) + 1;
}

APART int large(int a) {
  volatile char b[70000];
  b[a & 1023] = 1;
  return leaf(b[7]) + leaf(a) + b[9];
}

APART int variadic(int count, ...) {
  va_list list;
  va_start(list, count);
  int sum = 0;
  for (int i = 0; i < count; ++i) {
    sum += leaf(va_arg(list, int));
  }
  va_end(list);
  return sum;
}

APART int dynamic(int a) {
  char* b = __builtin_alloca(a);
  memset(b, a, a);
  return leaf(b[0]) + 1;
}

APART int through_pointer(int a) { return pointer(a) + 1; }

APART int last_through_pointer(int a) { return pointer(a); }

APART int last_call(int a) { return with_array(a + 1); }

APART int recursive(int a) { return a <= 0 ? 1 : recursive(a - 1) + recursive(a - 2); }

APART int even(int a);
APART int odd(int a) { return a == 0 ? leaf(a) : even(a - 1) + 1; }
APART int even(int a) { return a == 0 ? 1 : odd(a - 1) + 1; }

APART int switched(int a) {
  volatile int b[8];
  switch (a) {
    case 0: b[1] = a; return leaf(b[0]) + 4;
    case 1: return with_array(a) + 3;
    case 2: sink = 4; return 7;
    case 3: return variadic(2, a, a) + 2;
    case 4: return last_call(a) + 9;
    case 5: sink = leaf(5); return 3;
    case 6: return recursive(a) * 7;
    case 7: sink = 3; return leaf(8) + 1;
    case 9: return even(a) + 5;
    default: return a;
  }
}

APART int switched_far(int a) {
  volatile int b[8];
  switch (a & 15) {
    case 0: b[0] = variadic(5, 1, 2, 3, 4, 5) + variadic(4, 1, 2, 3, 4); break;
    case 1: b[0] = variadic(5, 2, 2, 3, 4, 5) * variadic(4, 1, 7, 3, 4) + leaf(a); break;
    case 2: b[0] = variadic(5, 3, 2, 3, 4, 5) - variadic(4, 1, 8, 3, 4) + leaf(a + 1); break;
    case 3: b[0] = variadic(5, 4, 2, 3, 4, 5) ^ variadic(4, 1, 9, 3, 4) + leaf(a + 2); break;
    case 4: b[0] = variadic(5, 5, 2, 3, 4, 5) | variadic(4, 1, 1, 3, 4) + leaf(a + 3); break;
    case 5: b[0] = variadic(5, 6, 2, 3, 4, 5) & variadic(4, 1, 2, 2, 4) + leaf(a + 4); break;
    case 6: b[0] = variadic(5, 7, 2, 3, 4, 5) + variadic(4, 1, 2, 1, 4) + leaf(a + 5); break;
    case 7: b[0] = with_array(variadic(5, 8, 2, 3, 4, 5)); break;
    default: return 0;
  }
  return b[0] + leaf(b[0]);
}

APART int computed(int a) {
  static const void* const places[] = {&&first, &&second, &&third};
  volatile int b[6];
  int sum = 0;
next:
  b[a & 3] = a;
  goto* places[a % 3 < 0 ? 0 : a % 3];
first:
  sum += leaf(a);
  if (--a > 0) goto next;
  return sum;
second:
  sum += with_array(a);
  if (--a > 0) goto next;
  return sum + 1;
third:
  sum += b[2] + recursive(a);
  if (--a > 0) goto next;
  return sum + 2;
}

APART __attribute__((noreturn)) void never(int a) {
  sink = a;
  for (;;) {
    sink = leaf(sink);
  }
}

APART int may_stop(int a) {
  if (a > 100) {
    volatile int b[20];
    b[a & 7] = a;
    never(b[1]);
  }
  return leaf(a) + 2;
}

APART double floating(double a, float b) {
  volatile double c[4] = {a, b, a * b, a / (b + 1)};
  return c[sink & 3] * b + a;
}

APART int either(int a) { return (a ? leaf : with_array)(a) + 1; }

static jmp_buf place;
APART int jumps(int a) {
  volatile int b[4] = {a};
  if (setjmp(place) != 0) {
    return b[0];
  }
  if (a > 3) {
    longjmp(place, a);
  }
  return leaf(a) + b[1];
}

APART int many(int a, int b, int c, int d, int e, int f, int g, int h) {
  return variadic(8, a, b, c, d, e, f, g, h) + variadic(8, h, g, f, e, d, c, b, a) + a * h;
}

__attribute__((weak)) int absent(int a);
APART int calls_absent(int a) { return absent ? absent(a) : leaf(a) + 1; }

typedef struct { int of[30]; } Big;
APART Big by_value(Big big) {
  big.of[sink & 15] = leaf(big.of[2]);
  return big;
}
APART int passes_by_value(int a) {
  Big big = {{a}};
  return by_value(by_value(big)).of[3];
}

int main(int count, char** texts) {
  pointer = count > 3 ? leaf : recursive;
  Big big = {{count}};
  sink = with_array(count) + large(count) + variadic(3, 1, 2, 3) + dynamic(count) +
         through_pointer(count) + last_through_pointer(count) + last_call(count) +
         recursive(count) + odd(count) + switched(count) + switched_far(count) +
         computed(count) + may_stop(count) + (int)floating(count, 2.5f) + either(count) +
         jumps(count) + many(1, 2, 3, 4, 5, 6, 7, count) + calls_absent(count) +
         by_value(big).of[1] + passes_by_value(count);
  printf("%d %s\n", sink, texts[0]);
  return sink;
}
