// One object of the library, with what a conversion reads of it beforehand.
#pragma once

#include <latigo/latigo.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "doubts.h"
#include "grid_file.h"

namespace latigo::python {

// From what an object is made: always the same, so that all objects of one definition give the same digits.
struct Definition {
  std::string text;              // a configuration file with the one section Geodesy; empty for the records
  bool hasVerticalUnit = false;  // whether the text has the key VertUnit: heights beside grid coordinates are in it
  GeodesyParams params{};
  EllDiff diff{};
  Adjustment adjustment{};
  std::string datumGrid;  // path, empty for none; it replaces the seven parameters
  std::string geoid;      // path, empty for none
  double orthoHCorr = 0;
};

// Why an object was not made.
struct Failure {
  std::int32_t code;     // of the library, or a Fault
  const char* function;  // null for a Fault
};

// Makes the object of a section; throws Failure. A missing geoid (code 9) is a failure too.
api::Geodesy FromFile(const char* path, const char* section);

// Only one thread at a time may use a handle with grid files. Conversions do not change one without.
class Handle {
 public:
  // Throws Failure, or std::system_error for a file of which the identity cannot be read.
  explicit Handle(const Definition& definition);

  // Whether a grid file is open.
  bool HasFiles() const { return datumFile_ || geoidFile_; }
  const GridFile* DatumFile() const { return datumFile_.get(); }
  const GridFile* GeoidFile() const { return geoidFile_.get(); }

  const api::Geodesy& Api() const { return object_; }
  GeodesyHandle Object() const { return object_.Handle(); }
  // The same object without its local grid.
  GeodesyHandle WithoutLocalGrid() const { return projection_ ? projection_.Handle() : object_.Handle(); }
  DatumArea* Area() { return area_ ? &*area_ : nullptr; }
  const cli::RoundTrip& RoundTrip() const { return roundTrip_; }
  const cli::RoundTrip& RoundTripWithoutLocalGrid() const { return projectionRoundTrip_; }
  bool HasGeoid() const { return hasGeoid_; }
  bool HasVerticalUnit() const { return hasVerticalUnit_; }

 private:
  api::Geodesy object_;
  api::Geodesy projection_;  // without a handle if the object has no local grid
  cli::RoundTrip roundTrip_, projectionRoundTrip_;
  std::unique_ptr<GridFile> datumFile_, geoidFile_;
  std::optional<DatumArea> area_;
  bool hasGeoid_ = false;
  bool hasVerticalUnit_ = false;
};

// Whether two objects have the same records, constants and grid files, bit by bit.
bool SameDefinition(const api::Geodesy& a, const api::Geodesy& b);

}  // namespace latigo::python
