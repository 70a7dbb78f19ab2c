// The measurements of the page, by the exports: round-trip errors and point scale factors.
#pragma once

#include <latigo/latigo.hpp>
#include <string>

#include "../picture/measures.h"
#include "systems.h"

namespace latigo::page {

class Grid {
 public:
  explicit Grid(const System& system);

  // The projection's three-letter code.
  std::string Code() const;

  const picture::Measures& Measured() const { return measures_; }

 private:
  api::Geodesy object_;
  picture::Measures measures_;
};

// The rows of the closure table, in Markdown.
std::string ClosureTable();

}  // namespace latigo::page
