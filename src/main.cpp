#include "control/driver.h"

int main() { return run_program(); }
