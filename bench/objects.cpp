// Creating and destroying objects, and the time from loading the library to the first result.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <stdexcept>

#include "floors/transverse_mercator.h"
#include "grid_file.h"
#include "library.h"
#include "peers.h"
#include "records.h"
#include "rows.h"

namespace bench {

namespace {

// The British grid.
constexpr GeodesyParams Own = BritishGrid;

constexpr const char* Section =
    "[Geodesy]\n"
    "Projection=TransMerc\n"
    "SemiMajorAxis=6377563.396\n"
    "Flattening=299.3249646\n"
    "RefLatitude=49\n"
    "CentralMeridian=-2\n"
    "ScaleFactor=0.9996012717\n"
    "FalseEasting=400000\n"
    "FalseNorthing=-100000\n";

constexpr double Latitude = 52.5 * Degree;
constexpr double Longitude = 1.5 * Degree;
constexpr Values PeerTolerance = {2e-3, 2e-3};

std::string ProjDefinition() {
  return ProjText("tmerc", Own,
                  ProjAngle("lat_0", Own.RefLatitude) + ProjAngle("lon_0", Own.CentralMeridian) +
                      ProjNumber("k_0", Own.ScaleFactor));
}

// Reads a small file.
void ReadWhole(const std::string& path) {
  char buffer[4096];
  const int file = open(path.c_str(), O_RDONLY);
  if (file < 0 || read(file, buffer, sizeof buffer) <= 0) {
    throw std::runtime_error(path + " cannot be read");
  }
  close(file);
}

// A contestant that creates and destroys an object; its result is the conversion of one position.
template <typename Make>
Contestant MakeAndEnd(const std::string& name, const Values& tolerance, Make make) {
  constexpr int Count = 64;
  const auto round = [make] {
    const Stopwatch watch;
    for (int i = 0; i < Count; ++i) {
      make(nullptr);
    }
    return watch.Nanoseconds() / Count;
  };
  const auto answers = [make] {
    Values out{};
    make(&out);
    return Points{out};
  };
  return {name, round, answers, tolerance};
}

// The other contestants: the floor, which reads the file's bytes if there is a file, and PROJ.
void AddOthers(Row& row, const std::string& path) {
  row.Add(MakeAndEnd("floor", Metres(1e-8), [path](Values* out) {
    if (!path.empty()) {
      ReadWhole(path);
    }
    const auto floor = std::make_unique<TransverseMercatorFloor>(Own);
    benchmark::DoNotOptimize(floor.get());
    if (out != nullptr) {
      floor->GeoXY(Latitude, Longitude, (*out)[0], (*out)[1]);
    }
  }));
  if (const auto make = ProjMaker(ProjDefinition(), Latitude, Longitude)) {
    row.Add(MakeAndEnd("PROJ", PeerTolerance, make));
  }
}

void AddRecordRow(const Run& run) {
  Row row{.name = "create and destroy", .contestants = {}, .targets = {{"PROJ", 0.02}}, .floorBinds = false};
  for (const Library& library : run.libraries) {
    row.Add(MakeAndEnd(library.name, Metres(1e-8), [library](Values* out) {
      const GeodesyHandle object = library.CreateGeodesy(&Own);
      if (out != nullptr) {
        library.GeoXY(object, &(*out)[0], &(*out)[1], Latitude, Longitude);
      }
      library.DestroyGeodesy(object);
    }));
  }
  if (run.WithOthers()) {
    AddOthers(row, "");
  }
  Register(std::move(row));
}

void AddFileRow(const Run& run) {
  const std::string path = Folder().File("grid.ini");
  std::ofstream(path) << Section;
  Row row{
      .name = "create from a file and destroy", .contestants = {}, .targets = {{"PROJ", 0.60}}, .floorBinds = false};
  for (const Library& library : run.libraries) {
    row.Add(MakeAndEnd(library.name, Metres(1e-8), [library, path](Values* out) {
      const GeodesyHandle object = library.CreateFileGeodesy(path.c_str(), nullptr);
      if (out != nullptr) {
        library.GeoXY(object, &(*out)[0], &(*out)[1], Latitude, Longitude);
      }
      library.DestroyGeodesy(object);
    }));
  }
  if (run.WithOthers()) {
    AddOthers(row, path);
  }
  Register(std::move(row));
}

// Runs the program that loads a library and converts one position; it prints the nanoseconds, x and y.
Values RunFirstResult(const std::string& command) {
  std::FILE* const pipe = popen(command.c_str(), "r");
  Values out{};
  const int read = pipe == nullptr ? 0 : std::fscanf(pipe, "%lf %lf %lf", &out[0], &out[1], &out[2]);
  if (pipe == nullptr || pclose(pipe) != 0 || read != 3) {
    throw std::runtime_error(command + " failed");
  }
  return out;
}

Contestant FirstResult(const std::string& name, const std::string& arguments, double tolerance) {
  const std::string command = "exec '" LATIGO_FIRST_RESULT "' " + arguments;
  return {name, [command] { return RunFirstResult(command)[0]; },
          [command] {
            const Values out = RunFirstResult(command);
            return Points{{out[1], out[2]}};
          },
          Metres(tolerance)};
}

void AddLoadRow(const Run& run) {
  Row row{.name = "load to first result", .contestants = {}, .targets = {{"PROJ", 0.12}}, .floorBinds = false};
  for (const Library& library : run.libraries) {
    row.Add(FirstResult(library.name, "latigo '" + library.path + "'", 1e-8));
  }
  if (run.WithOthers()) {
    row.Add(FirstResult("floor", "floor '" LATIGO_FLOOR_LIBRARY "'", 1e-8));
#if BENCH_HAS_PROJ
    row.Add(FirstResult("PROJ", "proj '" LATIGO_PROJ_LIBRARY "'", 2e-3));
#endif
  }
  Register(std::move(row));
}

}  // namespace

void AddObjectRows(const Run& run) {
  AddRecordRow(run);
  AddFileRow(run);
  AddLoadRow(run);
}

}  // namespace bench
