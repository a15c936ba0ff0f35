#include "program.h"

extern int read_line(char* line, int size);  // of the board's library
extern void write_number(int number);

static void handle_line(const char* line) {
  if (line[0] == '!') {
    run_command(line[1], line[2] - '0');
  } else {
    write_number(parse_expression(&line));
  }
}

int main(void) {
  char line[64];
  while (read_line(line, sizeof line) > 0) {
    handle_line(line);
  }
  return 0;
}
