#include "progress.h"

#include <chrono>
#include <cstdio>
#include <string>

namespace ybtool {

double Progress::steady_seconds() {
  return std::chrono::duration<double>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

Progress::Progress(std::ostream* out, long total, double interval_seconds,
                   Clock now)
    : out_(out),
      total_(total),
      interval_(interval_seconds),
      clock_(now),
      start_(now()),
      last_shown_(start_) {}

Progress::~Progress() {
  if (shown_length_ > 0) *out_ << '\n' << std::flush;
}

void Progress::frame_done() {
  ++done_;
  if (!out_) return;
  const double now = clock_();
  if (now - last_shown_ >= interval_) show(now);
}

void Progress::finish() {
  if (shown_length_ == 0) return;
  show(clock_());
  *out_ << '\n' << std::flush;
  shown_length_ = 0;
}

void Progress::show(double now) {
  std::string line = "frame " + std::to_string(done_);
  if (total_ >= done_) line += "/" + std::to_string(total_);
  const double elapsed = now - start_;
  if (elapsed > 0) {
    char rate[32];
    std::snprintf(rate, sizeof rate, ", %.1f fps", done_ / elapsed);
    line += rate;
  }
  // Blank out the rest of a longer line drawn before.
  const size_t length = line.size();
  if (length < shown_length_) line.append(shown_length_ - length, ' ');
  *out_ << '\r' << line << std::flush;
  shown_length_ = length;
  last_shown_ = now;
}

}  // namespace ybtool
