#include "sparse/tree.h"

namespace zelvo {

void elimination_tree(const Graph& graph, GroupTree& tree) {
  tree.parent = Vector<int>(tree.n, "elimination tree");
  Vector<int> ancestor(tree.n, "elimination tree");
  for (int k = 1; k <= tree.n; ++k) {
    const int old = tree.perm(k);
    for (int e = graph.xadj(old); e < graph.xadj(old + 1); ++e) {
      int i = tree.invp(graph.adjncy(e));
      if (i >= k) continue;
      while (ancestor(i) != k) {
        const int next = ancestor(i);
        ancestor(i) = k;
        if (next == 0) {
          tree.parent(i) = k;
          break;
        }
        i = next;
      }
    }
  }
}

namespace {

// Children as lists: fson(p) is the first child of p, brother(v) the next child of v's parent.
// The roots are one more list, from the highest number down.
struct SonLists {
  Vector<int> fson, brother;
  int first_root = 0;
  explicit SonLists(int n) : fson(n, "elimination tree"), brother(n, "elimination tree") {}
};

SonLists sons_ascending(const GroupTree& tree) {
  SonLists sons(tree.n);
  int last_root = 0;
  for (int v = tree.n; v >= 1; --v) {
    const int p = tree.parent(v);
    if (p == 0) {
      (last_root == 0 ? sons.first_root : sons.brother(last_root)) = v;
      last_root = v;
    } else {
      sons.brother(v) = sons.fson(p);
      sons.fson(p) = v;
    }
  }
  return sons;
}

// Length of the column by which a group is child of its parent: its last.
int last_length(const GroupTree& tree, int v) { return tree.length(v) - tree.weight(v) + 1; }

// A child goes to the front of its brothers unless the last of them has a longer column; then it
// goes to the end.
SonLists sons_by_length(const GroupTree& tree) {
  SonLists sons(tree.n);
  Vector<int> last_son(tree.n, "elimination tree");
  int last_root = 0;
  for (int v = tree.n; v >= 1; --v) {
    const int p = tree.parent(v);
    if (p == 0) {
      (last_root == 0 ? sons.first_root : sons.brother(last_root)) = v;
      last_root = v;
      continue;
    }
    const int last = last_son(p);
    if (last != 0 && last_length(tree, last) > last_length(tree, v)) {
      sons.brother(last) = v;
      last_son(p) = v;
    } else {
      sons.brother(v) = sons.fson(p);
      sons.fson(p) = v;
      if (last == 0) last_son(p) = v;
    }
  }
  return sons;
}

// number(v) = place of v in the postorder that the lists give.
Vector<int> postorder(const GroupTree& tree, const SonLists& sons) {
  Vector<int> number(tree.n, "postorder", UNINITIALIZED);
  int next = 1;
  int v = sons.first_root;
  while (v != 0) {
    while (sons.fson(v) != 0) v = sons.fson(v);
    number(v) = next++;
    while (sons.brother(v) == 0 && tree.parent(v) != 0) {
      v = tree.parent(v);
      number(v) = next++;
    }
    v = sons.brother(v);
  }
  return number;
}

Vector<int> moved(const Vector<int>& values, const Vector<int>& number) {
  Vector<int> out(values.size(), "elimination tree", UNINITIALIZED);
  for (std::int64_t v = 1; v <= values.size(); ++v) out(number(v)) = values(v);
  return out;
}

// Renumbers the order and the tree.
void renumber(GroupTree& tree, const Vector<int>& number) {
  for (int v = 1; v <= tree.n; ++v) {
    if (tree.parent(v) != 0) tree.parent(v) = number(tree.parent(v));
  }
  tree.parent = moved(tree.parent, number);
  tree.perm = moved(tree.perm, number);
  tree.weight = moved(tree.weight, number);
  if (tree.length.size() > 0) tree.length = moved(tree.length, number);
  for (int v = 1; v <= tree.n; ++v) tree.invp(tree.perm(v)) = v;
}

// Root of the set of v, with path halving.
int find_root(Vector<int>& set, int v) {
  while (set(v) != v) {
    set(v) = set(set(v));
    v = set(v);
  }
  return v;
}

// Column lengths of the postordered tree.
//
// Row i of L is the subtree of the tree that the lower neighbours of i span below i. Column j is
// as long as there are (weighted) rows whose subtree holds j. Each subtree is counted by its
// leaves: +w(i) at each leaf, -w(i) where two paths up from neighbouring leaves meet, -w(i) above
// i; sums over the descendants then give the lengths. j is a leaf of row i if no descendant of j
// was a neighbour of i before.
void column_counts(const Graph& graph, GroupTree& tree) {
  const int n = tree.n;
  tree.length = Vector<int>(n, "column lengths");
  Vector<int> first_descendant(n, "column lengths"), last_neighbour(n, "column lengths");
  Vector<int> last_leaf(n, "column lengths"), set(n, "column lengths", UNINITIALIZED);
  for (int v = 1; v <= n; ++v) {
    set(v) = v;
    if (first_descendant(v) == 0) {
      first_descendant(v) = v;
      tree.length(v) = tree.weight(v);  // a leaf of the tree is the whole subtree of its own row
    }
    const int p = tree.parent(v);
    if (p != 0 && first_descendant(p) == 0) first_descendant(p) = first_descendant(v);
  }
  for (int j = 1; j <= n; ++j) {
    const int p = tree.parent(j);
    if (p != 0) tree.length(p) -= tree.weight(j);
    const int old = tree.perm(j);
    for (int e = graph.xadj(old); e < graph.xadj(old + 1); ++e) {
      const int i = tree.invp(graph.adjncy(e));
      if (i <= j) continue;
      if (last_neighbour(i) < first_descendant(j)) {
        tree.length(j) += tree.weight(i);
        if (last_leaf(i) != 0) tree.length(find_root(set, last_leaf(i))) -= tree.weight(i);
        last_leaf(i) = j;
      }
      last_neighbour(i) = j;
    }
    if (p != 0) set(j) = p;
  }
  for (int j = 1; j <= n; ++j) {
    if (tree.parent(j) != 0) tree.length(tree.parent(j)) += tree.length(j);
  }
}

}  // namespace

void sfinit(const Graph& graph, const Groups& groups, GroupTree& tree) {
  assert(groups.count == graph.n && tree.perm.size() == graph.n && tree.invp.size() == graph.n);
  tree.n = graph.n;
  tree.weight = Vector<int>(tree.n, "group weights", UNINITIALIZED);
  for (int v = 1; v <= tree.n; ++v) tree.weight(v) = groups.weight(tree.perm(v));
  elimination_tree(graph, tree);
  renumber(tree, postorder(tree, sons_ascending(tree)));
  column_counts(graph, tree);
  renumber(tree, postorder(tree, sons_by_length(tree)));
  tree.first = Vector<int>(tree.n + 1, "group columns", UNINITIALIZED);
  tree.first(1) = 1;
  for (int v = 1; v <= tree.n; ++v) tree.first(v + 1) = tree.first(v) + tree.weight(v);
}

}  // namespace zelvo
