// The progress line of a conversion on a terminal: "frame 120/300, 47.5 fps"
// redrawn in place a few times a second. A conversion that ends before the
// first redraw shows nothing.
#pragma once

#include <cstddef>
#include <ostream>

namespace ybtool {

class Progress {
 public:
  using Clock = double (*)();  // seconds since any fixed moment
  static double steady_seconds();

  // `out` null: silent. `total` 0 when the number of frames is unknown (an
  // estimate smaller than the frames done is not shown either).
  Progress(std::ostream* out, long total, double interval_seconds = 0.25,
           Clock now = steady_seconds);
  // Ends a line left open, so that an error message starts on its own.
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void frame_done();
  // Shows the final count and ends the line, if a line was shown at all.
  void finish();

 private:
  void show(double now);

  std::ostream* out_;
  long total_;
  double interval_;
  Clock clock_;
  double start_, last_shown_;
  long done_ = 0;
  size_t shown_length_ = 0;  // of the line on screen; 0: none
};

}  // namespace ybtool
