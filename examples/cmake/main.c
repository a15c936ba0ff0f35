#include "filter.h"

volatile int sensor;
volatile int motor;

int main(void) {
  for (int i = 0; i < 1000; ++i) {
    motor = filter(sensor);
  }
  return 0;
}
