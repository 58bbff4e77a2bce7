#include "sparse/symbolic.h"

#include <algorithm>
#include <limits>

namespace zelvo {

void find_chains(const GroupTree& tree, Chains& chains) {
  chains.chain = Vector<int>(tree.n, "chains of columns", UNINITIALIZED);
  chains.xchain = Vector<int>(tree.n + 1, "chains of columns", UNINITIALIZED);
  chains.count = 0;
  for (int v = 1; v <= tree.n; ++v) {
    const bool continues = v > 1 && tree.parent(v - 1) == v &&
                           tree.length(v) == tree.length(v - 1) - tree.weight(v - 1);
    if (!continues) chains.xchain(++chains.count) = v;
    chains.chain(v) = chains.count;
  }
  chains.xchain(chains.count + 1) = tree.n + 1;
}

namespace {

// An ascending list of groups, built by merging, with the sum of the weights in it.
struct MergeList {
  Vector<int> next, mark;  // next(g) in the list, 0 at its end; mark(g) = chain that holds g
  int head = 0;
  int columns = 0;
};

void put_behind(MergeList& list, int before, int g, int chain, int weight) {
  int& link = before == 0 ? list.head : list.next(before);
  list.next(g) = link;
  link = g;
  list.mark(g) = chain;
  list.columns += weight;
}

// Puts the groups from[0..n-1] beyond `last` into the list; both ascend.
void merge_rows(MergeList& list, const int* from, std::int64_t n, int last, int chain,
                const Vector<int>& weight) {
  int before = 0, at = list.head;
  for (const int* row = std::upper_bound(from, from + n, last); row != from + n; ++row) {
    while (at != 0 && at < *row) {
      before = at;
      at = list.next(at);
    }
    if (at != *row) {
      put_behind(list, before, *row, chain, weight(*row));
      at = *row;
    }
  }
}

// Puts the neighbours of the chain's first group into the list. Its other groups have none that
// the first lacks.
void merge_neighbours(MergeList& list, const Graph& graph, const GroupTree& tree, int old, int last,
                      int chain) {
  for (int e = graph.xadj(old); e < graph.xadj(old + 1); ++e) {
    const int g = tree.invp(graph.adjncy(e));
    if (g <= last || list.mark(g) == chain) continue;
    int before = 0;
    for (int at = list.head; at != 0 && at < g; at = list.next(at)) before = at;
    put_behind(list, before, g, chain, tree.weight(g));
  }
}

}  // namespace

Detail chain_rows(const Graph& graph, const GroupTree& tree, Chains& chains) {
  // Groups below a chain are at most as many as equations.
  const auto columns_below = [&](int c) {
    const int f = chains.xchain(c), e = chains.xchain(c + 1);
    return tree.length(f) - (tree.first(e) - tree.first(f));
  };
  std::int64_t room = 0;
  for (int c = 1; c <= chains.count; ++c) room += columns_below(c);
  chains.rows = Vector<int>(room, "row lists of chains", UNINITIALIZED);
  chains.xrows = Vector<std::int64_t>(chains.count + 1, "row lists of chains", UNINITIALIZED);
  chains.xrows(1) = 1;
  // A chain waits on the chain of its first row below: heads, and links between the waiting.
  Vector<int> waiting(chains.count, "row lists of chains"), next(chains.count, "row lists");
  MergeList list{Vector<int>(tree.n, "row lists"), Vector<int>(tree.n, "row lists")};
  for (int c = 1; c <= chains.count; ++c) {
    const int last = chains.xchain(c + 1) - 1;
    const int expected = columns_below(c);
    list.head = list.columns = 0;
    for (int k = waiting(c); k != 0 && list.columns < expected; k = next(k)) {
      merge_rows(list, chains.rows.data() + (chains.xrows(k) - 1),
                 chains.xrows(k + 1) - chains.xrows(k), last, c, tree.weight);
    }
    if (list.columns < expected) {
      merge_neighbours(list, graph, tree, tree.perm(chains.xchain(c)), last, c);
    }
    if (list.columns != expected) return BAD_STRUCTURE;
    std::int64_t at = chains.xrows(c);
    for (int g = list.head; g != 0; g = list.next(g)) chains.rows(at++) = g;
    chains.xrows(c + 1) = at;
    if (list.head != 0) {
      int& head = waiting(chains.chain(list.head));
      next(c) = head;
      head = c;
    }
  }
  return NO_DETAIL;
}

void expand_tree(const Groups& groups, const GroupTree& tree, const Chains& chains, int maxsup,
                 FactorStructure& f) {
  const int n = f.neqns;
  f.perm = Vector<int>(n, "order of the factor", UNINITIALIZED);
  f.invp = Vector<int>(n, "order of the factor", UNINITIALIZED);
  f.parent = Vector<int>(n, "elimination tree", UNINITIALIZED);
  f.colcnt = Vector<int>(n, "column lengths", UNINITIALIZED);
  for (int v = 1; v <= tree.n; ++v) {
    const int g = tree.perm(v), w = tree.weight(v), p = tree.parent(v);
    for (int m = 0; m < w; ++m) {
      const int j = tree.first(v) + m, old = groups.member(groups.xmember(g) + m);
      f.perm(j) = old;
      f.invp(old) = j;
      f.parent(j) = m + 1 < w ? j + 1 : p == 0 ? 0 : tree.first(p);
      f.colcnt(j) = tree.length(v) - m;
    }
  }
  f.snode = Vector<int>(n, "supernodes", UNINITIALIZED);
  f.nsuper = 0;
  for (int c = 1; c <= chains.count; ++c) {
    const int from = tree.first(chains.xchain(c)), end = tree.first(chains.xchain(c + 1));
    for (int j = from; j < end; ++j) {
      if ((j - from) % maxsup == 0) ++f.nsuper;
      f.snode(j) = f.nsuper;
    }
  }
  f.xsuper = Vector<int>(f.nsuper + 1, "supernodes", UNINITIALIZED);
  for (int j = n; j >= 1; --j) f.xsuper(f.snode(j)) = j;
  f.xsuper(f.nsuper + 1) = n + 1;
}

void expand_rows(const GroupTree& tree, const Chains& chains, FactorStructure& f) {
  f.xlindx = Vector<std::int64_t>(f.nsuper + 1, "row lists", UNINITIALIZED);
  f.xlnz = Vector<std::int64_t>(f.neqns + 1, "column starts", UNINITIALIZED);
  f.max_cols = f.max_rows = 0;
  std::int64_t rows = 1, place = 1;
  for (int J = 1; J <= f.nsuper; ++J) {
    const int r = f.colcnt(f.xsuper(J));
    f.xlindx(J) = rows;
    rows += r;
    for (int j = f.xsuper(J); j < f.xsuper(J + 1); ++j) {
      f.xlnz(j) = place;
      place += r;
    }
    f.max_cols = std::max(f.max_cols, f.xsuper(J + 1) - f.xsuper(J));
    f.max_rows = std::max(f.max_rows, r);
  }
  f.xlindx(f.nsuper + 1) = rows;
  f.xlnz(f.neqns + 1) = place;
  f.factor_size = place - 1;

  f.lindx = Vector<int>(rows - 1, "row lists", UNINITIALIZED);
  int* out = f.lindx.data();
  int J = 1;
  for (int c = 1; c <= chains.count; ++c) {
    const int end = tree.first(chains.xchain(c + 1));
    for (; J <= f.nsuper && f.xsuper(J) < end; ++J) {
      for (int j = f.xsuper(J); j < end; ++j) *out++ = j;
      for (std::int64_t k = chains.xrows(c); k < chains.xrows(c + 1); ++k) {
        const int g = chains.rows(k);
        for (int j = tree.first(g); j < tree.first(g + 1); ++j) *out++ = j;
      }
    }
  }
  assert(out == f.lindx.data() + (rows - 1));
}

namespace {

// For each list entry of the graph, an edge between groups: where the rows of the end eliminated
// later begin in the list of the other end's chain.
Vector<int> edge_offsets(const Graph& graph, const GroupTree& tree, const Chains& chains) {
  Vector<int> offset(graph.adjncy.size(), "edge offsets", UNINITIALIZED);
  Vector<int> where(tree.n, "edge offsets", UNINITIALIZED);  // of a row in the list at hand
  for (int c = 1; c <= chains.count; ++c) {
    const int from = chains.xchain(c), end = chains.xchain(c + 1);
    for (int v = from; v < end; ++v) where(v) = tree.first(v) - tree.first(from);
    int below = tree.first(end) - tree.first(from);
    for (std::int64_t k = chains.xrows(c); k < chains.xrows(c + 1); ++k) {
      where(chains.rows(k)) = below;
      below += tree.weight(chains.rows(k));
    }
    for (int v = from; v < end; ++v) {
      const int old = tree.perm(v);
      for (int e = graph.xadj(old); e < graph.xadj(old + 1); ++e) {
        const int u = tree.invp(graph.adjncy(e));
        if (u > v) offset(e) = where(u);
      }
    }
  }
  // The later end learns it from the earlier one. Lists ascend, so taking the groups in turn meets
  // the entries of each list in turn.
  Vector<int> at(graph.xadj);
  for (int d = 1; d <= graph.n; ++d) {
    for (int e = graph.xadj(d); e < graph.xadj(d + 1); ++e) {
      const int c = graph.adjncy(e), back = at(c)++;
      if (tree.invp(c) > tree.invp(d)) offset(back) = offset(e);
    }
  }
  return offset;
}

// Where an entry of column j would stand if the list of its chain began at offset 0.
Vector<std::int64_t> column_bases(const GroupTree& tree, const Chains& chains,
                                  const FactorStructure& f) {
  Vector<std::int64_t> base(f.neqns, "column bases", UNINITIALIZED);
  for (int c = 1; c <= chains.count; ++c) {
    const int from = tree.first(chains.xchain(c)), end = tree.first(chains.xchain(c + 1));
    for (int j = from; j < end; ++j) base(j) = f.xlnz(j) - (f.xsuper(f.snode(j)) - from);
  }
  return base;
}

}  // namespace

void place_values(const int* ia, const int* ja, const Groups& groups, const Graph& graph,
                  const GroupTree& tree, const Chains& chains, FactorStructure& f) {
  f.luperm = Vector<std::int64_t>(ia[f.neqns] - 1, "places of the values", UNINITIALIZED);
  const Vector<int> offset = edge_offsets(graph, tree, chains);
  const Vector<std::int64_t> base = column_bases(tree, chains, f);
  Vector<int> where(graph.n, "edge offsets", UNINITIALIZED);  // by group: offset of its edge here
  std::int64_t* const place = f.luperm.data();
  for (int c = 1; c <= graph.n; ++c) {
    const int v = tree.invp(c);
    for (int e = graph.xadj(c); e < graph.xadj(c + 1); ++e) where(graph.adjncy(e)) = offset(e);
    where(c) = tree.first(v) - tree.first(chains.xchain(chains.chain(v)));
    for (int m = groups.xmember(c); m < groups.xmember(c + 1); ++m) {
      const int i = groups.member(m), p = f.invp(i), end = ia[i] - 1;
      for (int t = ia[i - 1] - 1; t < end;) {
        const int d = groups.group(ja[t]), u = tree.invp(d);
        if (u >= v) {  // the column of i; rows of d
          const std::int64_t start = base(p) + where(d) - tree.first(u);
          do place[t] = start + f.invp(ja[t]);
          while (++t < end && groups.group(ja[t]) == d);
        } else {  // the columns of d; row of i
          const int row = where(d) + (p - tree.first(v));
          do place[t] = base(f.invp(ja[t])) + row;
          while (++t < end && groups.group(ja[t]) == d);
        }
      }
    }
  }
}

}  // namespace zelvo
