/* Uses what of newlib is called through pointers, or is recursive. */
#include <assert.h>
#include <reent.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <wchar.h>

int _raise_r(struct _reent*, int);
int _mbtowc_r(struct _reent*, wchar_t*, const char*, size_t, mbstate_t*);
int _wctomb_r(struct _reent*, char*, wchar_t, mbstate_t*);
void _reclaim_reent(struct _reent*);

char text[90];
wchar_t wide[9];
float number;
int whole;

void prints(double a) {
  printf("%f %ls\n", a, wide);
  iprintf("%d\n", whole);
  snprintf(text, sizeof text, "%f", a);
  puts(text);
  siscanf(text, "%d", &whole);
}

void scans(void) {
  scanf("%d %f %[a-c]", &whole, &number, text);
  sscanf(text, "%d %f", &whole, &number);
}

void uses_file(const char* name) {
  FILE* file = fopen(name, "r+");
  fgets(text, 9, file);
  fseek(file, ftell(file), SEEK_SET);
  fwrite(text, 1, 9, file);
  fflush(NULL);
  fclose(file);
}

void converts(const struct tm* time) {
  strftime(text, sizeof text, "%c", time);
  mbstowcs(wide, text, 9);
  wcstombs(text, wide, 9);
  _mbtowc_r(_REENT, wide, text, 9, NULL);
  _wctomb_r(_REENT, text, *wide, NULL);
}

void ends(int a) {
  assert(a != 1);
  if (a == 2) {
    abort();
  }
  _raise_r(_REENT, a);
}

/* Calls what a program registers, and a list of any length: no bound, and not reached by main. */
void leaves(int a) {
  _reclaim_reent(_REENT);
  exit(a);
}

int main(int count, char** texts) {
  struct tm time = {0};
  prints(count);
  scans();
  uses_file(texts[0]);
  converts(&time);
  ends(count);
  return whole;
}
