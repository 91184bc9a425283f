// The progress line of an apply on standard error: done / total, rate, time left and refusals
// so far, redrawn at most five times a second, and ended with a line feed.
#pragma once
#include <ctime>

class ApplyProgress {
public:
  // `fd` is where the line goes, or -1 for none.
  ApplyProgress(int fd, unsigned long total);
  void update(unsigned long done, unsigned long refused);
  // Draws the last state and ends the line (nothing if nothing was drawn).
  void end(unsigned long done, unsigned long refused);

private:
  void draw(unsigned long done, unsigned long refused, double now);

  int fd_;
  unsigned long total_;
  double start_;
  double drawnAt_ = -1;
};
