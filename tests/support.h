// What the tests share: records of known systems, grid files made on the spot, the log, and a temporary directory.
#pragma once

#include <gtest/gtest.h>
#include <latigo/latigo.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace support {

inline constexpr double Pi = 3.141592653589793;
inline constexpr double HalfPi = 1.5707963267948966;
inline constexpr double Second = Pi / 648000;
inline constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double Infinity = std::numeric_limits<double>::infinity();

constexpr double Rad(double degrees) {
  return degrees * Pi / 180;
}

enum Kind : std::int32_t { LambertKind = 1, MercatorKind = 2, TransverseKind = 3, SMercKind = 9 };

inline GeodesyParams WGS84(std::int32_t kind) {
  GeodesyParams params{};
  params.SemiMajorAxis = 6378137.0;
  params.InvFlattening = 298.257223563;
  params.Kind = kind;
  params.Unit = 1;
  return params;
}

inline GeodesyParams MercatorAt30() {
  GeodesyParams params = WGS84(MercatorKind);
  params.RefLatitude = Rad(30);
  params.CentralMeridian = Rad(10);
  params.FalseEasting = 1000;
  params.FalseNorthing = 2000;
  return params;
}

inline GeodesyParams Utm31() {
  GeodesyParams params = WGS84(TransverseKind);
  params.ScaleFactor = 0.9996;
  params.CentralMeridian = Rad(3);
  params.FalseEasting = 500000;
  return params;
}

// NAD27 / Texas South Central, in US survey feet.
inline GeodesyParams Texas() {
  GeodesyParams params{};
  params.SemiMajorAxis = 6378206.4;
  params.InvFlattening = 294.9786982;
  params.Kind = LambertKind;
  params.Unit = 0.3048006096012192;
  params.RefLatitude = Rad(27 + 50.0 / 60);
  params.CentralMeridian = Rad(-99);
  params.NorthParallel = Rad(28 + 23.0 / 60);
  params.SouthParallel = Rad(30 + 17.0 / 60);
  params.FalseEasting = 2000000;
  return params;
}

struct Destroy {
  void operator()(GeodesyObject* handle) const { DestroyGeodesy(handle); }
};
using Object = std::unique_ptr<GeodesyObject, Destroy>;

inline Object Make(const GeodesyParams& params) {
  Object object(CreateGeodesy(&params));
  EXPECT_TRUE(object) << "code " << GetGeodesyError();
  return object;
}

// Records are equal bit by bit.
template <typename T>
bool Same(const T& left, const T& right) {
  return std::memcmp(&left, &right, sizeof left) == 0;
}

// The name of a unit or axis, or the code in brackets.
inline std::string Name(const Object& object, std::int32_t request, const char* language = "", std::int32_t size = 40) {
  char text[40] = "untouched";
  const bool found = GetLocalName(object.get(), request, language, text, size) == 1;
  EXPECT_EQ(found, GetGeodesyError() == 0);
  return found ? text : "[" + std::to_string(GetGeodesyError()) + "]";
}

// The outcome of a conversion; what it does not write stays Untouched.
inline constexpr double Untouched = -12345;
struct XY {
  double x = Untouched, y = Untouched;
  std::int32_t code = 0;
};
struct LatLon {
  double latitude = Untouched, longitude = Untouched;
  std::int32_t code = 0;
};
inline XY Forward(const Object& object, double latitude, double longitude) {
  XY out;
  const std::int32_t success = GeoXY(object.get(), &out.x, &out.y, latitude, longitude);
  out.code = GetGeodesyError();
  EXPECT_EQ(success != 0, out.code == 0);
  return out;
}
inline LatLon Inverse(const Object& object, double x, double y) {
  LatLon out;
  const std::int32_t success = XYGeo(object.get(), x, y, &out.latitude, &out.longitude);
  out.code = GetGeodesyError();
  EXPECT_EQ(success != 0, out.code == 0);
  return out;
}

// A directory that goes with the test, and what the library logs meanwhile.
class Scratch : public testing::Test {
 protected:
  Scratch() {
    char name[] = "/tmp/latigo-XXXXXX";
    directory_ = mkdtemp(name);
    setenv("LATIGO_DEBUG_OUTPUT", Path("log").c_str(), 1);
  }
  ~Scratch() override {
    unsetenv("LATIGO_DEBUG_OUTPUT");
    std::filesystem::remove_all(directory_);
  }

  std::string Path(const std::string& name) const { return directory_ + "/" + name; }

  std::string Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(Path(name), std::ios::binary) << bytes;
    return Path(name);
  }

  // The log lines since the last call, without the thread id in front; an empty line separates none of them.
  std::vector<std::string> Log() const {
    std::ifstream file(Path("log"));
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
      if (!line.empty()) {
        lines.push_back(line.substr(line.find("] ") + 2));
      }
    }
    file.close();
    std::filesystem::remove(Path("log"));
    return lines;
  }

 private:
  std::string directory_;
};

using Lines = std::vector<std::string>;

// The bytes of a grid file: 3 rows of 23 columns, so that a record just holds the header. Node values come from a
// function of row, column and index.
struct Grid {
  std::int32_t nc = 23, nr = 3, nz = 1;
  float west = 10, lonstep = 0.25F, south = 50, latstep = 0.25F;
  std::string magic = "TIDEWRAK";
  std::function<float(int row, int col, int i)> value = [](int row, int col, int i) {
    return static_cast<float>(100 * row + 10 * col + i);
  };

  std::string Header() const {
    std::string bytes = "A grid of corrections for test";
    bytes.resize(56, '\0');
    const double a = 1.5;
    const double b = -2.5;
    std::memcpy(&bytes[32], &a, 8);
    std::memcpy(&bytes[40], &b, 8);
    bytes += (magic + std::string(8, ' ')).substr(0, 8);
    for (const std::int32_t count : {nc, nr, nz}) {
      bytes.append(reinterpret_cast<const char*>(&count), 4);
    }
    for (const float place : {west, lonstep, south, latstep, 0.0F}) {
      bytes.append(reinterpret_cast<const char*>(&place), 4);
    }
    return bytes;
  }

  std::string Bytes() const {
    const auto record = static_cast<std::size_t>(nc * nz * 4 + 4);
    std::string bytes = Header();
    bytes.resize(std::max<std::size_t>(record * static_cast<std::size_t>(nr + 1), 96), '\x7F');
    for (int row = 0; row < nr; ++row) {
      for (int col = 0; col < nc; ++col) {
        for (int i = 0; i < nz; ++i) {
          const float word = value(row, col, i);
          const auto place =
              record * static_cast<std::size_t>(row + 1) + 4 + static_cast<std::size_t>(col * nz + i) * 4;
          std::memcpy(&bytes[place], &word, 4);
        }
      }
    }
    return bytes;
  }
};

}  // namespace support
