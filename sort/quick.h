// The randomised three-way partition that the index sorts and the quick selection of
// TopK share, with the quicksort and the selection written on it. An entry is a key
// and its position: every swap moves both.
#pragma once

#include <stdint.h>
#include <stdlib.h>

namespace zivks::sort {

// Keys and positions side by side.
template <class K>
struct Entries {
  K* key;
  int32_t* pos;

  void swap(int32_t a, int32_t b) const {
    const K k = key[a];
    key[a] = key[b];
    key[b] = k;
    const int32_t p = pos[a];
    pos[a] = pos[b];
    pos[b] = p;
  }
};

// Where a partition of [lo, hi] left its three parts: [lo, g) goes before the pivot,
// [g, e) compares equal to it (the pivot at g), [e, hi] goes after it.
struct Split {
  int32_t g, e;
};

// ---- Partition
// Draws the pivot at lo + rand() % (hi - lo): the last place of a range is never the
// pivot. before(x, v) says that key x belongs before the pivot v; a key that neither
// belongs before nor after v (a NaN on either side, for floats) counts as equal to it.
// Requires hi - lo >= 1.
template <class K, class Before>
inline Split partition3(const Entries<K>& t, int32_t lo, int32_t hi, Before before) {
  const int32_t p = lo + rand() % (hi - lo);
  t.swap(lo, p);
  const K v = t.key[lo];
  int32_t g = lo, s = lo + 1, e = hi + 1;
  while (s < e) {
    const K x = t.key[s];
    if (before(x, v)) {
      t.swap(++g, s++);
    } else if (before(v, x)) {
      t.swap(s, --e);
    } else {
      ++s;
    }
  }
  t.swap(lo, g);
  return {g, e};
}

// ---- Quicksort
// Sorts [lo, hi] by `before`: the part up to the pivot by recursion, the part behind
// the equal run by iteration. No cut-over to another sort for short ranges.
template <class K, class Before>
inline void quicksort(const Entries<K>& t, int32_t lo, int32_t hi, Before before) {
  while (hi - lo >= 1) {
    const Split sp = partition3(t, lo, hi, before);
    quicksort(t, lo, sp.g, before);
    lo = sp.e;
  }
}

// ---- Quick selection
// Brings the entries that belong at places up to `target` to the front of [lo, hi].
// A partition whose front reaches the target narrows to it (the pivot stays in the
// range); one whose equal run holds the target ends at once, leaving the front part in
// partition order; otherwise the front part is selected (and so sorted) by recursion
// and the selection goes on behind the equal run.
template <class K, class Before>
inline void quick_select(const Entries<K>& t, int32_t lo, int32_t hi, int32_t target, Before before) {
  while (hi - lo >= 1) {
    const Split sp = partition3(t, lo, hi, before);
    if (sp.g >= target) {
      hi = sp.g;
      continue;
    }
    if (target < sp.e) return;
    quick_select(t, lo, sp.g, target, before);
    lo = sp.e;
  }
}

}  // namespace zivks::sort
