#include "program.h"

extern void write_number(int number);

static int history[8];

static void command_show(int count) {
  for (int i = 0; i < count && i < 8; ++i) {
    write_number(history[i]);
  }
}

static void command_store(int value) {
  int moved[8];
  for (int i = 0; i < 7; ++i) {
    moved[i + 1] = history[i];
  }
  moved[0] = value;
  for (int i = 0; i < 8; ++i) {
    history[i] = moved[i];
  }
}

struct command {
  char name;
  void (*run)(int argument);
};

// Not constant: drivers may put their own in.
struct command commands[] = {{'s', command_show}, {'p', command_store}};

void run_command(char name, int argument) {
  for (unsigned i = 0; i < sizeof commands / sizeof commands[0]; ++i) {
    if (commands[i].name == name) {
      commands[i].run(argument);
    }
  }
}
