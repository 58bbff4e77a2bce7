#include "control/driver.h"

int main() { return zelvo::run_program(); }
