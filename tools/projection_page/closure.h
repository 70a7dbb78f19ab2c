// The measurements of the page, by the exports: round-trip errors and point scale factors.
#pragma once

#include <latigo/latigo.hpp>
#include <string>

#include "systems.h"

namespace latigo::page {

// In place of a code: a function succeeds and returns NaN.
inline constexpr std::int32_t NotANumber = -1;

struct Outcome {
  double value;       // valid if the code is 0
  std::int32_t code;  // 0, a code of the library, or NotANumber
};

class Grid {
 public:
  explicit Grid(const System& system);

  // The projection's three-letter code.
  std::string Code() const;

  // The round-trip error of a position, millimetres on the ground.
  Outcome Closure(Position position) const;

  // The point scale factor minus 1, parts per million.
  Outcome ScaleExcess(Position position) const;

 private:
  api::Geodesy object_;
  double a_, e2_;
};

// The rows of the closure table, in Markdown.
std::string ClosureTable();

}  // namespace latigo::page
