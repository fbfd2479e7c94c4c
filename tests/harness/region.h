// Memory a kernel touches, as the test harness sees it.
//
// A model of a kernel addresses each buffer through a Ptr: a region and a
// byte offset from the pointer the kernel is given. The harness runs the
// model twice: first to measure which offsets it touches, then for real on
// buffers sized to exactly that footprint, surrounded by guard bytes and
// followed by an inaccessible page, so a write outside the footprint shows
// up as a changed guard byte and a read past its end faults.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace yuvblit_test {

class Region {
 public:
  explicit Region(std::string name) : name_(std::move(name)) {}
  Region(const Region&) = delete;
  Region& operator=(const Region&) = delete;
  ~Region();

  const std::string& name() const { return name_; }

  // Measuring: every access widens the footprint.
  void start_measuring();
  bool touched() const { return lo_ <= hi_; }
  // Whether the measured model wrote to the region (not only read it).
  bool written() const { return written_; }
  int64_t lo() const { return lo_; }
  int64_t hi() const { return hi_; }

  // Allocates the measured footprint between `front` and `back` guard
  // bytes, right before an inaccessible page, fills everything with random
  // bytes and switches to live access. An untouched region gets a pointer to
  // the inaccessible page.
  void allocate(size_t front, size_t back, std::mt19937& rng);

  // The pointer a kernel receives (offset 0).
  uint8_t* base() const { return base_; }

  uint8_t read(int64_t off);
  void write(int64_t off, uint8_t v);

  // The whole buffer, guards included, for snapshots and comparisons.
  std::vector<uint8_t> snapshot() const;
  void restore(const std::vector<uint8_t>& bytes);
  // Offset (from base) of index i of a snapshot.
  int64_t offset_of(size_t i) const { return static_cast<int64_t>(i) - (base_ - start_); }

  // Fills the live footprint with a byte pattern produced by f(offset).
  template <class F>
  void fill(F f) {
    for (int64_t off = lo_; off <= hi_; ++off) base_[off] = f(off);
  }

 private:
  std::string name_;
  bool measuring_ = true;
  bool written_ = false;
  int64_t lo_ = std::numeric_limits<int64_t>::max();
  int64_t hi_ = std::numeric_limits<int64_t>::min();
  uint8_t* map_ = nullptr;
  size_t mapBytes_ = 0;
  uint8_t* start_ = nullptr;  // first guard byte
  size_t length_ = 0;         // guards + footprint
  uint8_t* base_ = nullptr;
};

// A byte pointer into a region, with the arithmetic of a real pointer.
struct Ptr {
  Region* region = nullptr;
  int64_t off = 0;

  Ptr operator+(int64_t n) const { return Ptr{region, off + n}; }
  Ptr operator-(int64_t n) const { return Ptr{region, off - n}; }
  Ptr& operator+=(int64_t n) {
    off += n;
    return *this;
  }
  Ptr& operator-=(int64_t n) {
    off -= n;
    return *this;
  }
  uint8_t get(int64_t i = 0) const { return region->read(off + i); }
  void put(int64_t i, uint8_t v) const { region->write(off + i, v); }
};

}  // namespace yuvblit_test
