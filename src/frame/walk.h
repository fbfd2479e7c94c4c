// Shared idioms of the kernel walks: unsigned do-while counters, 32-bit
// wrapping offsets and the overlap-safe way to run a row operation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>

namespace yuvblit {

// "Counted down by n, compared as unsigned": the body has already run once;
// it runs again while the value before the subtraction exceeded n.
inline bool more(uint32_t& remaining, uint32_t n) {
  const bool go = remaining > n;
  remaining -= n;
  return go;
}

// How many times a do-while body runs whose counter starts at `count` and
// drops by `n` per pass with the test above: at least once.
inline size_t passes(uint32_t count, uint32_t n) {
  return count <= n ? 1 : (static_cast<size_t>(count) + n - 1) / n;
}

// Offsets are computed in 32-bit wrapping arithmetic, as the kernels' own
// integer registers would, then applied to native pointers.
inline int32_t wrap32(int64_t v) {
  return static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint64_t>(v)));
}
inline int32_t half(int32_t v) { return v >> 1; }  // arithmetic halving

template <typename T>
inline T* step(T* p, int64_t bytes) {
  return reinterpret_cast<T*>(reinterpret_cast<uintptr_t>(p) +
                              static_cast<uintptr_t>(static_cast<intptr_t>(wrap32(bytes))));
}

// True when byte ranges [a, a+na) and [b, b+nb) share a byte.
inline bool overlaps(const void* a, size_t na, const void* b, size_t nb) {
  const uintptr_t pa = reinterpret_cast<uintptr_t>(a);
  const uintptr_t pb = reinterpret_cast<uintptr_t>(b);
  return pa < pb + nb && pb < pa + na;
}

}  // namespace yuvblit

namespace yuvblit {

// Runs a row operation `op(firstGroup, count)` over `groups` groups whose
// destination rows start at `rows`. The kernels store each group's rows in
// order (first row before second) and move right group by group; a row
// operation that stores several groups of one row at once gives the same
// bytes unless two destination rows share bytes (pitches tighter than a
// row, planes placed on top of each other), and then it runs group by group.
template <class Op>
inline void run_row_groups(std::initializer_list<const void*> rows,
                           size_t bytesPerGroup, size_t groups, Op op) {
  const size_t bytes = bytesPerGroup * groups;
  bool shared = false;
  for (auto a = rows.begin(); a != rows.end(); ++a)
    for (auto b = a + 1; b != rows.end(); ++b) shared |= overlaps(*a, bytes, *b, bytes);
  if (!shared) {
    op(size_t{0}, groups);
    return;
  }
  for (size_t g = 0; g < groups; ++g) op(g, size_t{1});
}

}  // namespace yuvblit

namespace yuvblit {

// True when runs of `bytes` bytes that start at r, r + a, r + a + b,
// r + 2a + b, r + 2a + 2b, ... (steps alternating a and b) never share a
// byte: both steps go the same way and each is at least a run long. Walks
// whose rows advance that way may hand many rows to one row operation.
inline bool alternating_runs_disjoint(int64_t a, int64_t b, size_t bytes) {
  const int64_t n = static_cast<int64_t>(bytes);
  if (n < 0) return false;
  return (a >= n && b >= n) || (a <= -n && b <= -n);
}

// Collects rows (their starts, or whatever a row operation takes per row,
// T) and hands them to a row operation `flush(rows, count)` a batch at a
// time, so that one dispatched call covers many rows. The rows are handed
// over in the order added, so a row operation that finishes each row before
// the next does what one call per row would; one that does not needs rows
// that share no bytes. The walk calls finish() after its last row. Made
// with row_batch<T>(flush).
template <typename T, class Flush>
class RowBatch {
 public:
  explicit RowBatch(Flush flush) : flush_(flush) {}
  void add(const T& row) {
    rows_[count_++] = row;
    if (count_ == kBatch) finish();
  }
  void finish() {
    if (count_ != 0) flush_(rows_, count_);
    count_ = 0;
  }

 private:
  static constexpr size_t kBatch = 64;
  Flush flush_;
  T rows_[kBatch];
  size_t count_ = 0;
};

template <typename T, class Flush>
RowBatch<T, Flush> row_batch(Flush flush) {
  return RowBatch<T, Flush>(flush);
}

}  // namespace yuvblit
