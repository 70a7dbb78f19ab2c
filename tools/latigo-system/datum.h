// Operations from the datum of a system to WGS 84, in the signs and the convention of a section.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "crs.h"
#include "section.h"

namespace latigo::system {

// The seven parameters of a section: from WGS 84 to the object's datum, coordinate frame rotation.
struct SevenParameters {
  std::array<double, 3> translation{};  // metres
  std::array<double, 3> rotation{};     // arc seconds
  double scale = 0;                     // parts per million

  bool IsNull() const;
};

struct Operation {
  enum class Form { Parameters, Grid, Unshifted, NotExpressible };  // unshifted: by the null grid

  std::string id;    // "EPSG:1314"; empty for a chain that PROJ has made
  std::string name;  // "OSGB36 to WGS 84 (6)"
  double accuracy;   // metres; negative if it is not known
  Area area;
  Form form = Form::Parameters;
  SevenParameters parameters;
  std::vector<std::string> grids;
  std::string reason;  // of one that is not expressible
  Pj object;

  std::string Accuracy() const;
  // Accuracy, and parameters, grids or the reason.
  std::string Summary() const;
};

// In PROJ's order, the best first. Empty if the base of the system is WGS 84 itself, or nothing leads there.
std::vector<Operation> OperationsToWgs84(const Database& database, const Crs& crs);

// Whether the base of the system is WGS 84.
bool IsWgs84(const Database& database, const Crs& crs);

// What the user asks for.
struct Choice {
  bool none = false;
  std::string operation;                          // a number from 1, or a code
  std::optional<std::array<double, 2>> position;  // latitude and longitude, degrees
};

// Several operations fit.
class Ambiguous : public Refused {
  using Refused::Refused;
};

// The operation asked for, the best at the position, or the only one; null if there is none, or none is wanted. Throws
// Ambiguous if that would be a guess.
const Operation* Choose(const std::vector<Operation>& operations, const Choice& choice);

// A line for each operation.
std::string List(const std::vector<Operation>& operations);

// The keys, and comments on the operation.
void SetShift(const Crs& crs, const Operation& operation, Section& section);

}  // namespace latigo::system
