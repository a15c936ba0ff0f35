#pragma once

#include <QFont>

namespace velkor::ui {

// The size of all texts of the program, in steps of a tenth of the platform's own size. Lives in
// the user-interface thread, after the toolkit's application object.
class TextZoom {
 public:
  static constexpr int kLeast = 50;
  static constexpr int kMost = 300;

  TextZoom();
  ~TextZoom();
  TextZoom(const TextZoom&) = delete;
  TextZoom& operator=(const TextZoom&) = delete;

  int Percent() const { return percent_; }
  // Brought between the least and the most.
  void Set(int percent);

 private:
  const QFont own_;  // at 100 %
  int percent_ = 100;
};

}  // namespace velkor::ui
