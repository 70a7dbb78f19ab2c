#include "grid_file.h"

#include <latigo/latigo_errors.h>
#include <strings.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace latigo::grids {

namespace {

// Read by position.
class File {
 public:
  explicit File(const std::string& path) : file_(std::fopen(path.c_str(), "rb"), std::fclose) {}

  bool ReadAt(std::int64_t position, void* to, std::size_t count) const {
    return file_ != nullptr && fseeko(file_.get(), position, SEEK_SET) == 0 &&
           std::fread(to, 1, count, file_.get()) == count;
  }
  std::int64_t Size() const { return fseeko(file_.get(), 0, SEEK_END) == 0 ? ftello(file_.get()) : 0; }

 private:
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
};

// The library's rounding of a step, arc seconds.
int Seconds(float degrees) {
  const double seconds = double{degrees} * 3600 + 0.5;
  return seconds >= 1 && seconds < 1e7 ? static_cast<int>(seconds) : 0;
}

GeodesyHandle Create(const Ellipsoid& ellipsoid) {
  GeodesyParams params{};
  params.SemiMajorAxis = ellipsoid.a, params.InvFlattening = ellipsoid.invFlattening;
  params.Kind = LATIGO_KIND_MERCATOR, params.Unit = 1;
  GeodesyHandle object = CreateGeodesy(&params);
  if (object == nullptr) {
    throw Refused("the library makes no object on the ellipsoid " + std::to_string(ellipsoid.a) + ", 1/" +
                  std::to_string(ellipsoid.invFlattening));
  }
  return object;
}

Position Degrees(const Position& position) {
  return {position.latitude / Radians, position.longitude / Radians, position.height};
}

}  // namespace

bool ReadGridHeader(const std::string& path, GridHeader& header) {
  char bytes[HeaderBytes];
  const File file(path);
  if (!file.ReadAt(0, bytes, sizeof bytes)) {
    return false;
  }
  std::int32_t counts[3];
  float degrees[4];
  std::memcpy(counts, bytes + 64, sizeof counts);
  std::memcpy(degrees, bytes + 76, sizeof degrees);
  header.lonStep = degrees[1], header.latStep = degrees[3];
  header.lattice = {degrees[0], degrees[2], Seconds(degrees[1]), Seconds(degrees[3]), counts[0], counts[1], counts[2]};
  header.magic = strncasecmp(bytes + 56, "TIDEWRAK", 8) == 0;
  header.description.assign(bytes, header.magic ? 30 : 56);
  header.description.erase(std::min(header.description.find('\0'), header.description.size()));
  header.description.erase(header.description.find_last_not_of(' ') + 1);
  if (header.magic) {
    std::memcpy(&header.valueA, bytes + 32, sizeof header.valueA);
    std::memcpy(&header.valueB, bytes + 40, sizeof header.valueB);
  }
  header.fileBytes = file.Size();
  const Lattice& lattice = header.lattice;
  return std::fabs(lattice.west) <= 180 && std::fabs(lattice.south) <= 90 && lattice.lonStep > 0 &&
         lattice.latStep > 0 && lattice.cols > 0 && lattice.rows > 0 && lattice.depth > 0 &&
         lattice.cols <= MaxRecordBytes / 4 / lattice.depth && lattice.RecordBytes() <= MaxRecordBytes;
}

void ForEachRow(const std::string& path, const GridHeader& header,
                const std::function<void(std::int64_t row, std::span<const float> values)>& call) {
  const File file(path);
  const Lattice& lattice = header.lattice;
  if (header.fileBytes < lattice.FileBytes()) {
    throw Refused(path + ": has " + std::to_string(header.fileBytes) + " bytes, and its header takes " +
                  std::to_string(lattice.FileBytes()));
  }
  std::vector<float> record(static_cast<std::size_t>(lattice.RecordBytes() / 4));
  for (std::int64_t row = 0; row < lattice.rows; ++row) {
    if (!file.ReadAt(lattice.RecordBytes() * (row + 1), record.data(), record.size() * sizeof(float))) {
      throw Refused(path + ": row " + std::to_string(row) + " cannot be read");
    }
    call(row, std::span(record).subspan(1));
  }
}

LibraryGrid::LibraryGrid(const std::string& path, const Lattice& lattice, const Ellipsoid& ellipsoid)
    : kind_(static_cast<Kind>(std::clamp(lattice.depth, 1, 3))),
      limits_{lattice.South(), lattice.West(), lattice.North(), lattice.East()},
      object_(Create(ellipsoid)),
      wgs84_(Create({})) {
  const bool set = kind_ == Kind::Geoid
                       ? SetGeoid(object_.get(), path.c_str(), 0) != 0
                       : SetEllModel(object_.get(), path.c_str()) != 0 && SetEllModel(wgs84_.get(), path.c_str()) != 0;
  if (!set) {
    const std::int32_t code = GetGeodesyError();
    throw Refused(path + ": the library refuses it: code " + std::to_string(code) + ", " +
                  LatigoErrorText(code, kind_ == Kind::Geoid ? "SetGeoid" : "SetEllModel"));
  }
}

bool LibraryGrid::At(double latitude, double longitude, Values& values) const {
  double lon = longitude > 180 ? longitude - 360 : longitude < -180 ? longitude + 360 : longitude;
  if (kind_ == Kind::Geoid) {
    return Undulation(object_.get(), latitude * Radians, lon * Radians, &values[0]) != 0;
  }
  const double east = limits_.east > 180 && lon < 0 ? lon + 360 : lon;
  if (!(limits_.south <= latitude && latitude <= limits_.north && limits_.west <= east && east <= limits_.east)) {
    return false;  // the library would convert the position unshifted
  }
  const Position from{latitude, lon, 0};
  if (kind_ == Kind::Translation) {
    double phi = latitude * Radians, lambda = lon * Radians, h = 0;
    WGS84Conv(wgs84_.get(), &phi, &lambda, &h);
    values = Minus(Cartesian(Degrees({phi, lambda, h}), true), Cartesian(from, true));
    return true;
  }
  const Position to = ToWgs84(from);
  values = {(to.latitude - latitude) * 3600, std::remainder(to.longitude - lon, 360) * 3600, 0};
  return true;
}

Position LibraryGrid::ToWgs84(const Position& local) const {
  double phi = local.latitude * Radians, lambda = local.longitude * Radians, h = local.height;
  InvWGS84Conv(object_.get(), &phi, &lambda, &h);
  return Degrees({phi, lambda, h});
}

Position LibraryGrid::FromWgs84(const Position& wgs84) const {
  double phi = wgs84.latitude * Radians, lambda = wgs84.longitude * Radians, h = wgs84.height;
  WGS84Conv(object_.get(), &phi, &lambda, &h);
  return Degrees({phi, lambda, h});
}

Values LibraryGrid::Cartesian(const Position& position, bool wgs84) const {
  Values xyz{};
  GeoECEF((wgs84 ? wgs84_ : object_).get(), &xyz[0], &xyz[1], &xyz[2], position.latitude * Radians,
          position.longitude * Radians, position.height);
  return xyz;
}

Position LibraryGrid::Geographic(const Values& cartesian, bool wgs84) const {
  double phi = 0, lambda = 0, h = 0;
  ECEFGeo((wgs84 ? wgs84_ : object_).get(), cartesian[0], cartesian[1], cartesian[2], &phi, &lambda, &h);
  return Degrees({phi, lambda, h});
}

}  // namespace latigo::grids
