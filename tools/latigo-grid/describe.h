// Lines for people about sources, lattices and files.
#pragma once

#include <string>

#include "field.h"
#include "lattice.h"

namespace latigo::grids {

std::string Describe(const Field& field);
std::string Describe(const Lattice& lattice);

// What a node of the kind holds.
std::string Meaning(Kind kind);

}  // namespace latigo::grids
