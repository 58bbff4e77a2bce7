#include "sparse/graph.h"

#include <algorithm>
#include <limits>

namespace zelvo {

namespace {

// Columns of row i: *begin to *end - 1.
struct Row {
  const int *begin_, *end_;
  const int* begin() const { return begin_; }
  const int* end() const { return end_; }
};
Row row_of(const int* ia, const int* ja, int i) { return {ja + (ia[i - 1] - 1), ja + (ia[i] - 1)}; }

// A row is read only where the rows before it and its own ends let it lie in ja.
Detail check_pattern(int neqns, const int* ia, const int* ja, bool& ascending) {
  ascending = true;
  if (ia[0] != 1) return BAD_ROW;
  for (int i = 1; i <= neqns; ++i)
    if (ia[i] < ia[i - 1]) return BAD_ROW;
  for (int i = 1; i <= neqns; ++i) {
    int last = 0;
    for (const int j : row_of(ia, ja, i)) {
      if (j < i || j > neqns) return BAD_COLUMN;
      ascending = ascending && j > last;
      last = j;
    }
  }
  return NO_DETAIL;
}

// A well-mixed 64-bit key of an equation (the finalizer of splitmix64, Steele et al. 2014).
std::uint64_t key_of(int i) {
  auto z = static_cast<std::uint64_t>(i) * 0x9e3779b97f4a7c15u;
  z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
  z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
  return z ^ (z >> 31);
}

// hash(i) = sum of the keys of the closed neighbourhood of i: equal neighbourhoods, equal sums.
Vector<std::uint64_t> neighbourhood_hashes(int neqns, const int* ia, const int* ja) {
  Vector<std::uint64_t> key(neqns, "equation keys", UNINITIALIZED);
  for (int i = 1; i <= neqns; ++i) key(i) = key_of(i);
  Vector<std::uint64_t> hash(key);
  for (int i = 1; i <= neqns; ++i) {
    std::uint64_t sum = 0;
    const std::uint64_t own = key(i);
    for (const int j : row_of(ia, ja, i)) {
      if (j == i) continue;
      sum += key(j);
      hash(j) += own;
    }
    hash(i) += sum;
  }
  return hash;
}

// Members of a group are coupled with each other, so all of them stand in the row of the smallest.
void find_candidates(int neqns, const int* ia, const int* ja, Groups& groups) {
  const Vector<std::uint64_t> hash = neighbourhood_hashes(neqns, ia, ja);
  groups.count = 0;
  for (int i = 1; i <= neqns; ++i) {
    if (groups.group(i) != 0) continue;
    groups.group(i) = ++groups.count;
    for (const int j : row_of(ia, ja, i)) {
      if (groups.group(j) == 0 && hash(j) == hash(i)) groups.group(j) = groups.count;
    }
  }
}

void separate(int neqns, Groups& groups) {
  groups.count = neqns;
  for (int i = 1; i <= neqns; ++i) groups.group(i) = i;
}

void list_members(int neqns, Groups& groups) {
  groups.xmember = Vector<int>(groups.count + 1, "group starts");
  groups.member = Vector<int>(neqns, "group members", UNINITIALIZED);
  for (int i = 1; i <= neqns; ++i) ++groups.xmember(groups.group(i));
  int start = 1;
  for (int g = 1; g <= groups.count + 1; ++g) {
    start += groups.xmember(g);
    groups.xmember(g) = start;  // one behind the group; the fill below brings it to its start
  }
  for (int i = neqns; i >= 1; --i) groups.member(--groups.xmember(groups.group(i))) = i;
}

// The smallest equations of the groups carry all edges: groups C and D with min C < min D are
// coupled exactly if min D stands in the row of min C.
void link_groups(const int* ia, const int* ja, const Groups& groups, Graph& graph) {
  const auto smallest = [&](int g) { return groups.member(groups.xmember(g)); };
  graph.n = groups.count;
  graph.xadj = Vector<int>(graph.n + 1, "graph");
  Vector<std::int64_t> degree(graph.n, "vertex degrees");
  const auto for_each_edge = [&](auto&& visit) {
    for (int c = 1; c <= graph.n; ++c) {
      for (const int j : row_of(ia, ja, smallest(c))) {
        const int d = groups.group(j);
        if (d != c && smallest(d) == j) visit(c, d);
      }
    }
  };
  for_each_edge([&](int c, int d) { ++degree(c), ++degree(d); });
  std::int64_t total = 0;
  for (int c = 1; c <= graph.n; ++c) {
    graph.xadj(c) = static_cast<int>(total + 1);
    total += degree(c);
    if (total >= std::numeric_limits<int>::max()) {
      throw MemoryFailure{static_cast<double>(total) * sizeof(int), "the graph of the matrix"};
    }
    degree(c) = graph.xadj(c);  // from here on the next free place of the list
  }
  graph.xadj(graph.n + 1) = static_cast<int>(total + 1);
  graph.adjncy = Vector<int>(total, "the graph of the matrix", UNINITIALIZED);
  for_each_edge([&](int c, int d) {
    graph.adjncy(degree(c)++) = d;
    graph.adjncy(degree(d)++) = c;
  });
}

// Equal hashes are no proof. Proof is that every stored value lies in a block between two linked
// groups or within one, and that there are as many values as these blocks hold when full.
bool blocks_are_full(const int* ia, const int* ja, const Groups& groups, const Graph& graph) {
  Vector<int> linked(graph.n, "group marks");  // last group that met this one
  std::int64_t room = 0, stored = 0;
  for (int c = 1; c <= graph.n; ++c) {
    const std::int64_t w = groups.weight(c);
    std::int64_t beyond = 0;
    linked(c) = c;
    for (int e = graph.xadj(c); e < graph.xadj(c + 1); ++e) {
      const int d = graph.adjncy(e);
      linked(d) = c;
      if (d > c) beyond += groups.weight(d);
    }
    room += w * beyond + w * (w - 1) / 2;
    for (int m = groups.xmember(c); m < groups.xmember(c + 1); ++m) {
      const int i = groups.member(m);
      for (const int j : row_of(ia, ja, i)) {
        if (linked(groups.group(j)) != c) return false;
        stored += j != i;
      }
    }
  }
  return stored == room;
}

// Lists of rows in any order: sorts each and drops repeated entries.
void tidy_lists(Graph& graph) {
  int* const list = graph.adjncy.data();
  int* end = list;
  int start = graph.xadj(1);
  for (int v = 1; v <= graph.n; ++v) {
    int *from = list + (start - 1), *to = list + (graph.xadj(v + 1) - 1);
    start = graph.xadj(v + 1);
    std::sort(from, to);
    end = std::copy(from, std::unique(from, to), end);
    graph.xadj(v + 1) = static_cast<int>(end - list) + 1;
  }
}

}  // namespace

Detail build_graph(int neqns, const int* ia, const int* ja, bool compress, Groups& groups,
                   Graph& graph) {
  assert(neqns >= 1);
  bool ascending;
  if (const Detail fault = check_pattern(neqns, ia, ja, ascending); fault != NO_DETAIL) {
    return fault;
  }
  groups.group = Vector<int>(neqns, "groups of equations");
  if (compress && ascending) {
    find_candidates(neqns, ia, ja, groups);
    list_members(neqns, groups);
    link_groups(ia, ja, groups, graph);
    if (blocks_are_full(ia, ja, groups, graph)) return NO_DETAIL;
  }
  separate(neqns, groups);
  list_members(neqns, groups);
  link_groups(ia, ja, groups, graph);
  if (!ascending) tidy_lists(graph);
  return NO_DETAIL;
}

}  // namespace zelvo
