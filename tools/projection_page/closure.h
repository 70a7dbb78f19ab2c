// What the page measures, through the exports: how far from its start a position comes back from the grid, and the
// point scale factor.
#pragma once

#include <memory>
#include <string>

#include "systems.h"

namespace latigo::page {

// Stands for a code where a function succeeds and gives no number.
inline constexpr std::int32_t NoNumber = -1;

struct Outcome {
  double value;       // a number if the code is 0
  std::int32_t code;  // 0, a code of the library, or NoNumber
};

class Grid {
 public:
  explicit Grid(const System& system);

  // The code that the projection bears in the library.
  std::string Code() const;

  // The distance between a position and what forward and inverse make of it, millimetres on the ground.
  Outcome Closure(Position position) const;

  // The point scale factor less 1, parts per million.
  Outcome ScaleExcess(Position position) const;

 private:
  struct Destroy {
    void operator()(GeodesyObject* handle) const { DestroyGeodesy(handle); }
  };
  std::unique_ptr<GeodesyObject, Destroy> object_;
  double a_, e2_;
};

// The rows of the closure table, in Markdown.
std::string ClosureTable();

}  // namespace latigo::page
