// One direct solver as the comparison sees it: the steps of its life, called in order.
#pragma once
#include "bridges.h"

namespace zelvo {

struct Peer {
  const char* name;
  bool takes_order;  // its analysis is given the order of the compressed graph
  void* state;
  // Takes the matrix over in the solver's own form; not timed. order: (n) order(new) = old, from 1.
  void (*prepare)(void* state, const Bridge& b, const int* order);
  void (*analyse)(void* state, const Bridge& b);
  void (*factor)(void* state, const Bridge& b);
  void (*solve)(void* state, const Bridge& b, double* x);
  void (*release)(void* state);
};

Peer own_solver();
Peer cholmod(bool takes_order);
Peer mumps();

// Order of the equations by nested dissection of the compressed graph, as the own analysis finds it.
Vector<int> compressed_order(const Bridge& b);

// GFlop/s of DGEMM on n x n matrices, over at least a tenth of a second of CPU time.
double dgemm_rate(int n);

// Growth of the process, MB, while the solver with this number does its work once.
void print_peak_memory(int ngird, int lgbr, int solver);
void print_solver_ratios(int rounds, int longest);
void print_element_ratios(int rounds);
void print_check_ratios(int rounds);

}  // namespace zelvo
