// A line that the user types is parsed and computed, or runs a command.
int parse_expression(const char** text);
void run_command(char name, int argument);
