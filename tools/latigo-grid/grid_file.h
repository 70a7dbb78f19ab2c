// A grid file of ours: its header and rows for inspection, its values as the library answers.
#pragma once

#include <latigo/latigo.h>

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "lattice.h"
#include "surface.h"

namespace latigo::grids {

struct GridHeader {
  Lattice lattice;
  std::string description;
  float lonStep = 0, latStep = 0;  // degrees, as stored
  bool magic = false;              // TIDEWRAK; the description is then 30 bytes
  double valueA = 0, valueB = 0;   // only with the magic
  std::int64_t fileBytes = 0;      // those that are there
};

// Whether a file's header can be that of a grid file: limits, counts and steps as the library accepts them. Fills the
// header.
bool ReadGridHeader(const std::string& path, GridHeader& header);

// Calls with each row from the south. Refuses a file whose rows cannot all be read.
void ForEachRow(const std::string& path, const GridHeader& header,
                const std::function<void(std::int64_t row, std::span<const float> values)>& call);

// Degrees and metres.
struct Position {
  double latitude, longitude, height;
};

class LibraryGrid : public Surface {
 public:
  // The ellipsoid is that of the object's datum. Refuses what the library refuses, with its code.
  LibraryGrid(const std::string& path, const Lattice& lattice, const Ellipsoid& ellipsoid);

  Kind TheKind() const override { return kind_; }
  Area Limits() const override { return limits_; }
  bool At(double latitude, double longitude, Values& values) const override;

  // The library's conversions through the datum grid, at height 0.
  Position ToWgs84(const Position& local) const;
  Position FromWgs84(const Position& wgs84) const;

  // Earth-centred coordinates on the ellipsoid of the object's datum or of WGS-84, and back.
  Values Cartesian(const Position& position, bool wgs84) const;
  Position Geographic(const Values& cartesian, bool wgs84) const;

 private:
  struct Destroy {
    void operator()(GeodesyHandle object) const { DestroyGeodesy(object); }
  };
  using Object = std::unique_ptr<GeodesyObject, Destroy>;

  Kind kind_;
  Area limits_;
  Object object_, wgs84_;  // on either ellipsoid; the first has the grid, and of a datum grid the second too
};

}  // namespace latigo::grids
