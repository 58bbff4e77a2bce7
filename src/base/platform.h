// What differs between operating systems: process time, a key press, the memory allocator.
#pragma once

// CPU time of the process, user plus system, in seconds.
double process_cpu_seconds();

// Reads one key. A terminal is read without waiting for Enter; a pipe, a file or a closed standard
// input never blocks.
void wait_for_key();

// Keeps freed memory in the process: a page given back to the system costs its first touch again.
void keep_freed_memory();
