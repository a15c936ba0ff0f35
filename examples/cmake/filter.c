#include "filter.h"

enum { LENGTH = 9 };
static int samples[LENGTH];
static unsigned next;

int filter(int sample) {
  int sorted[LENGTH];
  samples[next] = sample;
  next = (next + 1) % LENGTH;
  for (int i = 0; i < LENGTH; ++i) {
    int place = i;
    for (; place > 0 && sorted[place - 1] > samples[i]; --place) {
      sorted[place] = sorted[place - 1];
    }
    sorted[place] = samples[i];
  }
  return sorted[LENGTH / 2];
}
