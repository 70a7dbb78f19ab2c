// Lookups in grid files. PROJ's interpolation is bilinear and the library's is not, so results are compared at nodes.
#include <cmath>

#include "floors/datum.h"
#include "floors/grid.h"
#include "grid_file.h"
#include "library.h"
#include "peers.h"
#include "records.h"
#include "rows.h"

namespace bench {

namespace {

constexpr GeodesyParams Own = OnEllipsoid(6377397.155, 299.1528128);

constexpr int CellRow = 71;
constexpr int CellColumn = 140;

Range Latitudes(double first, double last) {
  return {GridFile::South() + first * GridFile::Step(), GridFile::South() + last * GridFile::Step()};
}
Range Longitudes(double first, double last) {
  return {GridFile::West() + first * GridFile::Step(), GridFile::West() + last * GridFile::Step()};
}

Points InOneCell() {
  return RandomPoints({Latitudes(CellRow + 0.01, CellRow + 0.99), Longitudes(CellColumn + 0.01, CellColumn + 0.99)});
}

Points AtRandom() {
  return RandomPoints({Latitudes(1, GridFile::rows - 2), Longitudes(1, GridFile::columns - 2)});
}

// Lines north-eastward through the grid, one after the other, with these numbers of points per row and column.
Points AlongTrack(double rows, double columns) {
  Points points(PointCount);
  for (std::size_t i = 0; i < PointCount; ++i) {
    const double line = static_cast<double>(i / RoundPoints);
    const double run = static_cast<double>(i % RoundPoints) / RoundPoints;
    points[i] = {GridFile::South() + (20.3 + 2 * line + rows * run) * GridFile::Step(),
                 GridFile::West() + (30.7 + columns * run) * GridFile::Step()};
  }
  return points;
}

// Nodes of the whole grid.
Points Nodes() {
  Points nodes;
  for (int row = 3; row < GridFile::rows - 1; row += 10) {
    for (int column = 3; column < GridFile::columns - 1; column += 20) {
      nodes.push_back({GridFile::South() + row * GridFile::Step(), GridFile::West() + column * GridFile::Step()});
    }
  }
  return nodes;
}

void AddGeoidRow(const Run& run, const GridFile& grid, const std::string& projGrid, const std::string& name,
                 Points points, double target) {
  const Task task = {std::move(points), Nodes()};
  const Values tolerance = {1e-9};
  Row row{.name = "Undulation " + name, .contestants = {}, .targets = {}};
  for (const Library& library : run.libraries) {
    const auto object = library.Make(Own);
    library.SetGeoid(object.get(), grid.path.c_str(), 0);
    row.Add(PointByPoint(library.name, task, tolerance,
                         [object, Undulation = library.Undulation](const Values& in, Values& out) {
                           Undulation(object.get(), in[0], in[1], &out[0]);
                         }));
  }
  if (run.WithOthers()) {
    row.Add(PointByPoint("floor", task, tolerance,
                         [floor = std::make_shared<GridFloor>(grid)](const Values& in, Values& out) {
                           floor->Lookup<1>(in[0], in[1], &out[0]);
                         }));
    AddProjUndulation(row, task, tolerance, projGrid);
    if (target > 0) {
      row.targets = {{"PROJ", target}};
    }
  }
  Register(std::move(row));
}

// The shift of a datum grid of two values, through earth-centred coordinates.
class GridShiftFloor {
 public:
  GridShiftFloor(const GridFile& grid, const EcefFloor& wgs84, const EcefFloor& own)
      : grid_(grid), wgs84_(wgs84), own_(own) {}

  void Forward(double phi, double lambda, double h, double& phi2, double& lambda2, double& h2) {
    double dX, dY, dZ;
    Translation(phi, lambda, h, dX, dY, dZ);
    double X, Y, Z;
    wgs84_.GeoECEF(phi, lambda, h, X, Y, Z);
    own_.ECEFGeo(X + dX, Y + dY, Z + dZ, phi2, lambda2, h2);
  }

  void Reverse(double phi, double lambda, double h, double& phi2, double& lambda2, double& h2) {
    double dX, dY, dZ;
    Translation(phi, lambda, h, dX, dY, dZ);
    double X, Y, Z;
    own_.GeoECEF(phi, lambda, h, X, Y, Z);
    wgs84_.ECEFGeo(X - dX, Y - dY, Z - dZ, phi2, lambda2, h2);
  }

 private:
  static constexpr double ArcSecond = Pi / 648000;

  void Translation(double phi, double lambda, double h, double& dX, double& dY, double& dZ) {
    double shift[2];
    grid_.Lookup<2>(phi, lambda, shift);
    double X, Y, Z;
    own_.GeoECEF(phi, lambda, h, dX, dY, dZ);
    wgs84_.GeoECEF(phi + shift[0] * ArcSecond, lambda + shift[1] * ArcSecond, h, X, Y, Z);
    dX -= X;
    dY -= Y;
    dZ -= Z;
  }

  GridFloor grid_;
  const EcefFloor wgs84_, own_;
};

void AddDatumGridRows(const Run& run, const GridFile& grid, const std::string& projGrid, const std::string& name,
                      const Points& points) {
  const Task task = {points, Nodes()};
  const Values tolerance = {1e-14, 1e-14, 1e-7};
  // The library looks up the shift at the WGS-84 position, PROJ at the resulting position.
  const Values peerTolerance = {5e-9, 5e-9, 5e-2};
  Row there{.name = "WGS84Conv, datum grid, " + name, .contestants = {}, .targets = {}};
  Row back{.name = "InvWGS84Conv, datum grid, " + name, .contestants = {}, .targets = {}};
  for (const Library& library : run.libraries) {
    const auto object = library.Make(Own);
    library.SetEllModel(object.get(), grid.path.c_str());
    there.Add(PointByPoint(library.name, task, tolerance,
                           [object, WGS84Conv = library.WGS84Conv](const Values& in, Values& out) {
                             out = in;
                             WGS84Conv(object.get(), &out[0], &out[1], &out[2]);
                           }));
    back.Add(PointByPoint(library.name, task, tolerance,
                          [object, InvWGS84Conv = library.InvWGS84Conv](const Values& in, Values& out) {
                            out = in;
                            InvWGS84Conv(object.get(), &out[0], &out[1], &out[2]);
                          }));
  }
  if (run.WithOthers()) {
    const EcefFloor own(Own);
    const EcefFloor wgs84(6378137, 1 / 298.257223563);
    const auto floor = std::make_shared<GridShiftFloor>(grid, wgs84, own);
    there.Add(PointByPoint("floor", task, tolerance, [floor](const Values& in, Values& out) {
      floor->Forward(in[0], in[1], in[2], out[0], out[1], out[2]);
    }));
    back.Add(PointByPoint("floor", task, tolerance, [floor](const Values& in, Values& out) {
      floor->Reverse(in[0], in[1], in[2], out[0], out[1], out[2]);
    }));
    // The file contains the shift to WGS-84.
    const std::string definition = "+proj=hgridshift +grids=" + projGrid;
    AddProjShift(there, task, peerTolerance, definition, false);
    AddProjShift(back, task, peerTolerance, definition, true);
  }
  Register(std::move(there));
  Register(std::move(back));
}

}  // namespace

void AddGridRows(const Run& run) {
  const GridFile geoid = WriteGeoidGrid();
  const std::string projGeoid = WriteGeoidGridForProj();
  AddGeoidRow(run, geoid, projGeoid, "in one cell", InOneCell(), 0.20);
  AddGeoidRow(run, geoid, projGeoid, "along a track", AlongTrack(40, 75), 0);       // about nine points per cell
  AddGeoidRow(run, geoid, projGeoid, "on a survey line", AlongTrack(1.6, 1.6), 0);  // a point about every 15 m
  AddGeoidRow(run, geoid, projGeoid, "at random", AtRandom(), 0);

  const GridFile datum = WriteDatumGrid();
  const std::string projDatum = WriteDatumGridForProj();
  AddDatumGridRows(run, datum, projDatum, "one cell", InOneCell());
  AddDatumGridRows(run, datum, projDatum, "at random", AtRandom());
}

}  // namespace bench
