// What an object says of itself.
#pragma once

#include <pybind11/pybind11.h>

#include <cstdint>
#include <string>
#include <vector>

#include "engine.h"

namespace latigo::python {

// Records, names and paths, in the library's units.
pybind11::dict Facts(Engine& engine);

// The name of a unit or axis (one of `LatigoName`), or None.
pybind11::object NameOf(Engine& engine, std::int32_t request, const std::string& language);

// A projection kind under one of its names, in small letters: that of latigo.h, its code, its words or a keyword of
// configuration files.
struct KindName {
  std::string name;
  std::int32_t number;
};
std::vector<KindName> KindNames();

}  // namespace latigo::python
