#include "harness/region.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace yuvblit_test {

Region::~Region() {
  if (map_) munmap(map_, mapBytes_);
}

void Region::start_measuring() {
  measuring_ = true;
  written_ = false;
  lo_ = std::numeric_limits<int64_t>::max();
  hi_ = std::numeric_limits<int64_t>::min();
}

void Region::allocate(size_t front, size_t back, std::mt19937& rng) {
  const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  const size_t footprint = touched() ? static_cast<size_t>(hi_ - lo_ + 1) : 0;
  length_ = footprint ? front + footprint + back : 0;
  const size_t dataPages = (length_ + page - 1) / page;
  mapBytes_ = (dataPages + 1) * page;
  void* m = mmap(nullptr, mapBytes_, PROT_READ | PROT_WRITE,
                 MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (m == MAP_FAILED) throw std::runtime_error("mmap failed for " + name_);
  map_ = static_cast<uint8_t*>(m);
  uint8_t* fence = map_ + dataPages * page;  // inaccessible from here on
  mprotect(fence, page, PROT_NONE);
  start_ = fence - length_;
  base_ = footprint ? start_ + front - lo_ : fence;
  std::uniform_int_distribution<int> byte(0, 255);
  for (size_t i = 0; i < length_; ++i) start_[i] = static_cast<uint8_t>(byte(rng));
  measuring_ = false;
}

uint8_t Region::read(int64_t off) {
  if (measuring_) {
    lo_ = std::min(lo_, off);
    hi_ = std::max(hi_, off);
    return 0;
  }
  if (off < lo_ || off > hi_) throw std::logic_error(name_ + ": model read outside footprint");
  return base_[off];
}

void Region::write(int64_t off, uint8_t v) {
  if (measuring_) {
    written_ = true;
    lo_ = std::min(lo_, off);
    hi_ = std::max(hi_, off);
    return;
  }
  if (off < lo_ || off > hi_) throw std::logic_error(name_ + ": model write outside footprint");
  base_[off] = v;
}

std::vector<uint8_t> Region::snapshot() const {
  return std::vector<uint8_t>(start_, start_ + length_);
}

void Region::restore(const std::vector<uint8_t>& bytes) {
  // An empty region has no storage: nothing to copy, and memcpy must not
  // see its null pointers.
  if (bytes.empty() || length_ == 0) return;
  std::memcpy(start_, bytes.data(), std::min(bytes.size(), length_));
}

}  // namespace yuvblit_test
