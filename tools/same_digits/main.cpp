// Compares two builds of the library: same-digits LIBRARY OTHER FOLDER [POINTS [SEED]]
//
// Both builds do every conversion at POINTS (a million) random positions and at all combinations of special values,
// with random systems; codes and the bits of every output must be equal (any NaN equals any other). Prints a row for
// each comparison and the first differences; the exit status is 1 if there is one. Grid files are created in FOLDER.
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <functional>
#include <string>

#include "grid_bytes.h"
#include "library.h"
#include "records.h"

namespace {

using same_digits::Library;
using same_digits::Random;
using same_digits::Specials;
using same_digits::Uniform;

constexpr int PointsPerSystem = 1000;
constexpr int DifferencesShown = 3;

using Values = std::array<double, 4>;

// Input of an operation, and its output: values and the code.
struct Outcome {
  Values values{};
  std::int32_t code = 0;
};
using Operation = std::function<void(const Library&, GeodesyHandle, const Values& in, Outcome& out)>;

bool Same(double l, double r) {
  return std::bit_cast<std::uint64_t>(l) == std::bit_cast<std::uint64_t>(r) || (std::isnan(l) && std::isnan(r));
}

// A system created by both builds; its set-up is called for each.
class Pair {
 public:
  using SetUp = std::function<void(const Library&, GeodesyHandle)>;
  Pair(const Library& one, const Library& other, const GeodesyParams& params, const SetUp& setUp)
      : libraries_{&one, &other} {
    for (std::size_t i = 0; i < 2; ++i) {
      handles_[i] = libraries_[i]->CreateGeodesy(&params);
      codes_[i] = libraries_[i]->GetGeodesyError();
      if (handles_[i] != nullptr && setUp) {
        setUp(*libraries_[i], handles_[i]);
      }
    }
  }
  ~Pair() {
    for (std::size_t i = 0; i < 2; ++i) {
      libraries_[i]->DestroyGeodesy(handles_[i]);
    }
  }
  Pair(const Pair&) = delete;
  Pair& operator=(const Pair&) = delete;

  bool SameCode() const { return codes_[0] == codes_[1]; }
  bool Made() const { return handles_[0] != nullptr && handles_[1] != nullptr; }
  void Run(const Operation& operation, const Values& in, std::array<Outcome, 2>& out) const {
    for (std::size_t i = 0; i < 2; ++i) {
      out[i] = {in, 0};  // outputs not written by a call are equal
      operation(*libraries_[i], handles_[i], in, out[i]);
      out[i].code = libraries_[i]->GetGeodesyError();
    }
  }

 private:
  std::array<const Library*, 2> libraries_;
  std::array<GeodesyHandle, 2> handles_{};
  std::array<std::int32_t, 2> codes_{};
};

// One row of the report.
class Comparison {
 public:
  explicit Comparison(std::string name) : name_(std::move(name)) {}

  void At(const Pair& pair, const Operation& operation, const Values& in) {
    std::array<Outcome, 2> out;
    pair.Run(operation, in, out);
    ++points_;
    bool same = out[0].code == out[1].code;
    for (std::size_t i = 0; i < in.size(); ++i) {
      same = same && Same(out[0].values[i], out[1].values[i]);
    }
    if (!same && ++differences_ <= DifferencesShown) {
      std::printf("%s at %.17g %.17g %.17g %.17g\n", name_.c_str(), in[0], in[1], in[2], in[3]);
      for (const Outcome& each : out) {
        std::printf("    code %d: %.17g %.17g %.17g\n", each.code, each.values[0], each.values[1], each.values[2]);
      }
    }
  }
  void Creation(const Pair& pair) { differences_ += pair.SameCode() ? 0 : 1; }
  bool Report() const {
    std::printf("%-28s %9ld points  %ld differ\n", name_.c_str(), points_, differences_);
    return differences_ == 0;
  }

 private:
  std::string name_;
  long points_ = 0, differences_ = 0;
};

struct Subject {
  std::string name;
  Operation operation;
  bool plane;  // takes plane coordinates, else latitude and longitude
};

const std::vector<Subject> Conversions = {
    {"GeoXY", [](auto& l, auto h, auto& in, auto& o) { l.GeoXY(h, &o.values[0], &o.values[1], in[0], in[1]); }, false},
    {"XYGeo", [](auto& l, auto h, auto& in, auto& o) { l.XYGeo(h, in[0], in[1], &o.values[0], &o.values[1]); }, true},
    {"Scale", [](auto& l, auto h, auto& in, auto& o) { o.values[0] = l.Scale(h, in[0], in[1]); }, true},
};
const std::vector<Subject> DatumAndLines = {
    {"WGS84Conv", [](auto& l, auto h, auto&, auto& o) { l.WGS84Conv(h, &o.values[0], &o.values[1], &o.values[2]); },
     false},
    {"InvWGS84Conv",
     [](auto& l, auto h, auto&, auto& o) { l.InvWGS84Conv(h, &o.values[0], &o.values[1], &o.values[2]); }, false},
    {"EllConv",
     [](auto& l, auto h, auto&, auto& o) {
       l.EllConv(h, &o.values[0], &o.values[1], &o.values[2], 6378388, 1 / 297.0);
     },
     false},
    {"InvEllConv",
     [](auto& l, auto h, auto&, auto& o) { l.InvEllConv(h, &o.values[0], &o.values[1], nullptr, 6378388, 1 / 297.0); },
     false},
    {"GeoECEF",
     [](auto& l, auto h, auto& in, auto& o) {
       l.GeoECEF(h, &o.values[0], &o.values[1], &o.values[2], in[0], in[1], in[2]);
     },
     false},
    {"ECEFGeo",
     [](auto& l, auto h, auto& in, auto& o) {
       l.ECEFGeo(h, in[0], in[1], in[2], &o.values[0], &o.values[1], &o.values[2]);
     },
     true},
    {"GCircLL",
     [](auto& l, auto h, auto& in, auto& o) {
       o.values[0] = l.GCircLL(h, in[0], in[1], in[2] * 1e-4, in[3], &o.values[1]);
     },
     false},
    {"RLineLL",
     [](auto& l, auto h, auto& in, auto& o) {
       o.values[0] = l.RLineLL(h, in[0], in[1], in[2] * 1e-4, in[3], &o.values[1]);
     },
     false},
};
const std::vector<Subject> GridLookups = {
    {"Undulation", [](auto& l, auto h, auto& in, auto& o) { l.Undulation(h, in[0], in[1], &o.values[0]); }, false},
    DatumAndLines[0],
    DatumAndLines[1],
};

// A subject on systems chosen and set up by `prepare`.
class Run {
 public:
  Run(const Library& one, const Library& other, long points, std::uint64_t seed)
      : one_(one), other_(other), points_(points), seed_(seed) {}

  using Prepare = std::function<GeodesyParams(Random&, Pair::SetUp&)>;
  void Compare(const std::string& name, const Subject& subject, const Prepare& prepare, double extent) {
    Comparison comparison(name + " " + subject.name);
    Random random(seed_);
    for (long done = 0; done < points_; done += PointsPerSystem) {
      Pair::SetUp setUp;
      const GeodesyParams params = prepare(random, setUp);
      const Pair pair(one_, other_, params, setUp);
      comparison.Creation(pair);
      if (!pair.Made()) {
        continue;
      }
      const double radius = params.SemiMajorAxis / params.Unit * extent;
      const double width = 4 * extent;
      for (int i = 0; i < PointsPerSystem; ++i) {
        comparison.At(pair, subject.operation,
                      subject.plane ? Values{params.FalseEasting + Uniform(random, -radius, radius),
                                             params.FalseNorthing + Uniform(random, -radius, radius),
                                             Uniform(random, -radius, radius), 0}
                                    : Values{Uniform(random, -1.5708, 1.5708) * extent,
                                             params.CentralMeridian + Uniform(random, -width, width),
                                             Uniform(random, -1e4, 1e4), Uniform(random, -width, width)});
      }
      if (done % (50L * PointsPerSystem) == 0) {
        AtSpecials(comparison, pair, subject, same_digits::SpecialsOf(params));
      }
    }
    same_ = comparison.Report() && same_;
    std::fflush(stdout);
  }

  bool Same() const { return same_; }

 private:
  static void AtSpecials(Comparison& comparison, const Pair& pair, const Subject& subject, const Specials& specials) {
    const auto& first = subject.plane ? specials.x : specials.latitudes;
    const auto& second = subject.plane ? specials.y : specials.longitudes;
    for (std::size_t i = 0; i < first.size(); ++i) {
      for (std::size_t j = 0; j < second.size(); ++j) {
        comparison.At(pair, subject.operation,
                      {first[i], second[j], first[(i + j) % first.size()], second[(i * j) % second.size()]});
      }
    }
  }

  const Library& one_;
  const Library& other_;
  long points_;
  std::uint64_t seed_;
  bool same_ = true;
};

// Near the origin, on the whole plane or globe, and outside it.
constexpr double Extents[] = {0.05, 1, 30};

EllDiff RandomDiff(Random& random) {
  const auto turn = [&] { return Uniform(random, -1e-4, 1e-4); };
  const auto shift = [&] { return Uniform(random, -500, 500); };
  return {shift(), shift(), shift(), 1 + turn(), turn(), turn(), turn()};
}

std::string WriteGrid(const std::string& folder, int values) {
  std::string path = folder + "/grid" + std::to_string(values);
  support::Grid grid;
  grid.nz = values;
  grid.nr = 41;
  grid.nc = 83;
  grid.west = -2;
  grid.south = -1;
  grid.lonstep = grid.latstep = 0.05F;
  grid.value = [](int row, int col, int i) {
    return static_cast<float>(std::sin(row * 1.7 + i) * 3 + std::cos(col * 0.9) * 2);
  };
  std::ofstream(path, std::ios::binary) << grid.Bytes();
  return path;
}

int Main(const Library& one, const Library& other, const std::string& folder, long points, std::uint64_t seed) {
  Run run(one, other, points, seed);
  for (std::int32_t kind = LATIGO_KIND_LAMBERT; kind <= LATIGO_KIND_POLAR_STEREOGRAPHIC; ++kind) {
    for (const Subject& subject : Conversions) {
      for (const double extent : Extents) {
        run.Compare(
            "kind " + std::to_string(kind) +
                (extent < 1   ? ", near"
                 : extent > 1 ? ", far"
                              : ", globe"),
            subject, [kind](Random& random, Pair::SetUp&) { return same_digits::RandomRecord(random, kind); }, extent);
      }
    }
  }
  for (const Subject& subject : DatumAndLines) {
    run.Compare(
        "datum, lines", subject,
        [](Random& random, Pair::SetUp& setUp) {
          setUp = [diff = RandomDiff(random)](auto& l, auto h) { l.SetEllDiff(h, &diff); };
          return same_digits::RandomRecord(random, 3);
        },
        1);
  }
  for (const int values : {1, 2, 3}) {
    const std::string path = WriteGrid(folder, values);
    for (const Subject& subject : GridLookups) {
      if ((values == 1) == (subject.name == "Undulation")) {
        run.Compare(
            "grid of " + std::to_string(values), subject,
            [&](Random& random, Pair::SetUp& setUp) {
              setUp = [path, values](auto& l, auto h) {
                values == 1 ? l.SetGeoid(h, path.c_str(), 0.25) : l.SetEllModel(h, path.c_str());
              };
              GeodesyParams params = same_digits::RandomRecord(random, 3);
              params.CentralMeridian = 0;
              return params;
            },
            0.015);
      }
    }
  }
  for (std::uint32_t type = 1; type <= 17; ++type) {
    for (const Subject* subject : {&Conversions[0], &Conversions[1]}) {
      run.Compare(
          "local grid " + std::to_string(type), *subject,
          [type](Random& random, Pair::SetUp& setUp) {
            const Adjustment adjustment = {type | static_cast<std::uint32_t>(random() % 4) << 16U,
                                           Uniform(random, -1e5, 1e5),
                                           Uniform(random, -1e5, 1e5),
                                           Uniform(random, -4, 4),
                                           Uniform(random, 0.9, 1.1),
                                           Uniform(random, -1e5, 1e5),
                                           Uniform(random, -1e5, 1e5)};
            setUp = [adjustment](auto& l, auto h) { l.SetAdjustment(h, &adjustment); };
            return same_digits::RandomRecord(random, 3);
          },
          0.05);
    }
  }
  std::puts(run.Same() ? "No difference." : "The two builds differ.");
  return run.Same() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc < 4) {
      std::fputs("usage: same-digits LIBRARY OTHER FOLDER [POINTS [SEED]]\n", stderr);
      return 2;
    }
    const long points = argc > 4 ? std::atol(argv[4]) : 1000000;
    const std::uint64_t seed = argc > 5 ? std::strtoull(argv[5], nullptr, 10) : 1;
    return Main(Library(argv[1]), Library(argv[2]), argv[3], points, seed);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "same-digits: %s\n", failure.what());
    return 2;
  }
}
