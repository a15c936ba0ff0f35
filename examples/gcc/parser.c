#include "program.h"

static int read_number(const char** text) {
  int number = 0;
  while (**text >= '0' && **text <= '9') {
    number = number * 10 + (*(*text)++ - '0');
  }
  return number;
}

// "(" expression ")", or a number.
static int parse_factor(const char** text) {
  if (**text != '(') {
    return read_number(text);
  }
  ++*text;
  const int value = parse_expression(text);
  ++*text;
  return value;
}

int parse_expression(const char** text) {
  int sum = parse_factor(text);
  while (**text == '+' || **text == '*') {
    const char operation = *(*text)++;
    const int right = parse_factor(text);
    sum = operation == '+' ? sum + right : sum * right;
  }
  return sum;
}
