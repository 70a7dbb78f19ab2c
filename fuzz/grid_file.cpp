// The input as a grid file: opened as a datum grid and as a geoid grid, with lookups inside, on the limits and
// anywhere.
#include <latigo/latigo.h>

#include <algorithm>
#include <vector>

#include "fuzz_input.h"
#include "grid/interp_file.h"

namespace {

using namespace fuzz;
using latigo::InterpFile;

struct Head {
  char text[64];
  std::int32_t nc, nr, nz;
  float west, lonStep, south, latStep, unused;
};

// One axis of the lattice.
struct Axis {
  const float start, degrees;
  const std::int64_t nodes;
  const double origin = double{start} * Pi / 180, step = std::trunc(double{degrees} * 3600 + 0.5) / 3600 * Pi / 180;
  const double end = origin + step * static_cast<double>(nodes - 1);

  bool Holds(double at) const { return origin <= at && at <= end; }
  // The first and the last node that may contribute to a position: one more where rounding decides.
  std::int64_t Node(double at, double slack, std::int64_t most) const {
    return static_cast<std::int64_t>(std::clamp((at - origin) / step + slack, 0.0, static_cast<double>(most)));
  }
  std::int64_t First(double at) const { return Node(at, -1e-9, std::max<std::int64_t>(nodes - 2, 0)); }
  std::int64_t Last(double at) const { return Node(at, 1 + 1e-9, nodes - 1); }

  double Position(Input& in) const {
    const double known[] = {origin, end, std::nextafter(end, 10), in.Number(), origin - step - 2 * Pi};
    const std::size_t choice = in.Below(8);
    return choice < 5 ? known[choice] : origin + step * in.Take<std::int16_t>() / 1024;
  }
};

struct Lattice {
  const std::string& bytes;
  const Head head;
  const Axis latitude{head.south, head.latStep, head.nr}, longitude{head.west, head.lonStep, head.nc};

  // A lookup is outside, or after the file's end, or between the smallest and the largest of the nodes around it.
  void Check(double phi, double lambda, std::int32_t code, const std::vector<double>& values) const {
    if (longitude.end > Pi && lambda < 0) { lambda += 2 * Pi; }
    if (!latitude.Holds(phi) || !longitude.Holds(lambda)) { return REQUIRE(code == 4); }
    const std::int64_t words = std::int64_t{head.nc} * head.nz + 1, first = latitude.First(phi),
                       last = latitude.Last(phi);
    const std::int64_t rows = static_cast<std::int64_t>(bytes.size()) / 4 / words - 1;  // in the file
    REQUIRE(last < rows ? code == 0 : code == 13 || last - first > 1);
    for (std::size_t i = 0; i < values.size() && last < rows; ++i) {
      double least = INFINITY, greatest = -INFINITY, sum = 0;
      for (std::int64_t row = first; row <= last; ++row) {
        for (std::int64_t col = longitude.First(lambda); col <= longitude.Last(lambda); ++col) {
          float node;
          std::memcpy(&node, &bytes[static_cast<std::size_t>((row + 1) * words + 1 + col * head.nz) * 4 + 4 * i],
                      sizeof node);
          least = std::fmin(least, node), greatest = std::fmax(greatest, node), sum += double{node};
        }
      }
      const double slack = 1e-12 * std::fmax(std::fabs(least), std::fabs(greatest));
      REQUIRE(!std::isfinite(sum) || (least - slack <= values[i] && values[i] <= greatest + slack));
    }
  }
};

void Ask(Input& in, const std::string& path, const Lattice& lattice, InterpFile& grid, GeodesyHandle object) {
  const double phi = lattice.latitude.Position(in), lambda = lattice.longitude.Position(in);
  const std::int32_t depth = lattice.head.nz;
  const std::vector<double> untouched(static_cast<std::size_t>(std::min(depth, 6)), Untouched);
  std::vector<double> values = untouched, again = untouched;
  std::int32_t count = -1;
  const std::int32_t code = grid.Lookup(phi, lambda, &count, values).code();
  REQUIRE(count == (code == 0 ? depth : 0) && (code == 0 || values == untouched));
  lattice.Check(phi, lambda, code, values);
  // Results do not depend on earlier lookups.
  InterpFile fresh(path.c_str(), false);
  REQUIRE(fresh.Lookup(phi, lambda, nullptr, again).code() == code);
  REQUIRE(std::memcmp(values.data(), again.data(), values.size() * sizeof(double)) == 0);

  // With an object on the WGS-84 ellipsoid. Two values are the shift in arc seconds; outside there is no shift.
  double undulation = Untouched, latitude = phi, longitude = lambda, height = 100;
  const bool geoid = depth == 1, found = Undulation(object, phi, lambda, &undulation) == 1;
  REQUIRE(GetGeodesyError() == (!geoid ? 0 : code == 4 ? 8 : code) && found == (!geoid || code == 0));
  REQUIRE(undulation == 0.5 + (geoid && code == 0 ? values[0] : 0) || std::isnan(values[0]));
  REQUIRE(InvWGS84Conv(object, &latitude, &longitude, &height) == 1 && GetGeodesyError() == 0);
  const bool shifted = depth == 2 && code == 0;
  const double toPhi = phi + (shifted ? values[0] / 3600 * Degree : 0),
               toLambda = lambda + (shifted ? values[1] / 3600 * Degree : 0);
  if ((depth <= 2 || code != 0) && std::fabs(phi) < 1.5 && std::fabs(toPhi) < 1.5 && std::fabs(toLambda) < 100) {
    REQUIRE(std::fabs(latitude - toPhi) < 1e-10 && std::fabs(std::remainder(longitude - toLambda, 2 * Pi)) < 1e-10);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // The input: the points, whether the lattice is small, and the file.
  Input in{data, size};
  const std::string places = in.Text(64);
  Input points{data, places.size()};
  const bool small = in.Below(2) != 0;
  std::string bytes = in.Text(in.size);
  Head head{};
  if (bytes.size() >= sizeof head) {
    std::memcpy(&head, bytes.data(), sizeof head);
    if (small) { head.nc &= 7, head.nr &= 7, head.nz &= 3; }
    std::memcpy(bytes.data(), &head, sizeof head);
  }
  const std::string path = WriteFile("grid", bytes);
  const GeodesyParams params = {6378137, 298.257223563, 9, 1, 0, 0, 0, 0, 0, 0, 0, 0};
  GeodesyHandle object = CreateGeodesy(&params);
  try {
    InterpFile grid(path.c_str(), false);
    REQUIRE(head.nc > 0 && head.nr > 0 && head.nz > 0 && std::fabs(head.south) <= 90 && std::fabs(head.west) <= 180);
    REQUIRE((SetEllModel(object, path.c_str()) == 1) == (head.nz > 1) && GetGeodesyError() == (head.nz > 1 ? 0 : 2));
    REQUIRE((SetGeoid(object, path.c_str(), 0.5) == 1) == (head.nz == 1) &&
            GetGeodesyError() == (head.nz == 1 ? 0 : 9));
    const Lattice lattice{bytes, head};
    while (points.size > 0) { Ask(points, path, lattice, grid, object); }
  } catch (latigo::errcode& failure) {
    const std::int32_t code = failure.code();
    REQUIRE(code == (bytes.size() < sizeof head ? 3 : 2));
    REQUIRE(SetEllModel(object, path.c_str()) == 0 && GetGeodesyError() == code);
    REQUIRE(SetGeoid(object, path.c_str(), 0.5) == 0 && GetGeodesyError() == 9);
  }
  DestroyGeodesy(object);
  return 0;
}
