// A whole section: projection and datum, with comments that say where they are from and how far they are from PROJ.
#pragma once

#include <vector>

#include "crs.h"
#include "datum.h"
#include "measure.h"
#include "section.h"

namespace latigo::system {

struct Described {
  Section section;
  Difference projection;
  std::vector<std::string> notes;  // for the user, beside the section
};

// Throws Refused with the reason if the system cannot be expressed, or if the choice of an operation would be a guess.
Described Describe(const Database& database, const Crs& crs, const std::vector<Operation>& operations,
                   const Choice& choice, int points);

}  // namespace latigo::system
