// What the analysis of a sparse symmetric matrix finds out: order, elimination tree, supernodes and
// the row structure of the factor. All numbers count from 1; offsets into the factor are 64-bit.
//
// A supernode with c columns and r rows in its first column is a dense r x c column-major rectangle
// in the factor storage lnz, leading dimension r: its top c rows hold the diagonal block.
#pragma once
#include <cstdint>

#include "base/arrays.h"

namespace zelvo {

// The supernodal tree as lists, and the orders that walk it level by level. The numeric stage takes
// the supernodes as they are numbered, which is a postorder, and reads none of this; it is kept
// because it says which supernodes are independent of each other, which work on several processors
// would be scheduled by.
struct TreeSchedule {
  Vector<int> ncolupd;        // (nsuper) how many supernodes update each supernode
  Vector<int> xchild, child;  // (nsuper+1), (nsuper) children of each supernode, ascending
  Vector<int> snorder;        // (nsuper) leaves first, each supernode after its children
  Vector<int> topdown;        // (nsuper) roots first, each supernode after its parent
};

struct FactorStructure {
  int neqns = 0;
  int nsuper = 0;
  int max_cols = 0;              // columns of the largest supernode
  int max_rows = 0;              // length of the longest column
  std::int64_t factor_size = 0;  // reals in lnz, rectangles whole
  Vector<int> perm, invp;        // (neqns) perm(new) = old, invp(old) = new
  Vector<int> parent, colcnt;    // (neqns) elimination tree, 0 at a root; column lengths of L
  Vector<int> xsuper;            // (nsuper+1) first column of each supernode
  Vector<int> snode;             // (neqns) supernode of each column
  Vector<std::int64_t> xlindx;   // (nsuper+1) first row index of each supernode in lindx
  Vector<int> lindx;             // row indices of each supernode's first column, ascending
  Vector<std::int64_t> xlnz;     // (neqns+1) start of each column in lnz
  Vector<std::int64_t> luperm;   // (stored values of A) place of each in lnz
  Vector<int> sparent;           // (nsuper) supernodal tree, 0 at a root
  TreeSchedule schedule;
};

}  // namespace zelvo
