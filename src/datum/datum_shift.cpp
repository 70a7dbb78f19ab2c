#include "datum/datum_shift.h"

#include <array>
#include <cstring>

#include "math/angles.h"

namespace latigo {

namespace {

constexpr EllDiff Identity = {0, 0, 0, 1, 0, 0, 0};

// GetEllDiff returns this scale while a datum grid is used.
constexpr double GridMarker = -1.0;

double ArcSeconds(double value) {
  return value * Pi / 648000.0;
}

EllDiff Translation(double dX, double dY, double dZ) {
  return {dX, dY, dZ, 1, 0, 0, 0};
}

// From the other datum to the object's.
Cartesian Forward(const EllDiff& d, const Cartesian& p) {
  return {(p.X + d.DeltaRZ * p.Y - d.DeltaRY * p.Z) * d.DeltaScale + d.DeltaX,
          (p.Y - d.DeltaRZ * p.X + d.DeltaRX * p.Z) * d.DeltaScale + d.DeltaY,
          (p.Z + d.DeltaRY * p.X - d.DeltaRX * p.Y) * d.DeltaScale + d.DeltaZ};
}

// From the object's datum to the other one: signs reversed and scale inverted, which is not the exact inverse.
Cartesian Reverse(const EllDiff& d, const Cartesian& p) {
  const double invScale = 1 / d.DeltaScale;
  return {(p.X - d.DeltaRZ * p.Y + d.DeltaRY * p.Z) * invScale - d.DeltaX,
          (p.Y + d.DeltaRZ * p.X - d.DeltaRX * p.Z) * invScale - d.DeltaY,
          (p.Z - d.DeltaRY * p.X + d.DeltaRX * p.Y) * invScale - d.DeltaZ};
}

// Without a height, height 0.
Geographic Position(double latitude, double longitude, const double* h) {
  return {latitude, longitude, h != nullptr ? *h : 0};
}

void Store(const Geographic& position, double& latitude, double& longitude, double* h) {
  latitude = position.phi;
  longitude = position.lambda;
  if (h != nullptr) {
    *h = position.h;
  }
}

}  // namespace

void DatumShift::SetEllDiff(const EllDiff& diff) {
  Diff = diff;
  // The scale alone does not make a shift.
  DatumActive = Diff.DeltaX != 0 || Diff.DeltaY != 0 || Diff.DeltaZ != 0 ||  //
                Diff.DeltaRX != 0 || Diff.DeltaRY != 0 || Diff.DeltaRZ != 0;
  DatumFile.reset();
}

void DatumShift::GetEllDiff(EllDiff& diff) const {
  diff = DatumFile ? EllDiff{0, 0, 0, GridMarker, 0, 0, 0} : Diff;
}

void DatumShift::SetEllModel(const char* path) {
  DatumFile.reset();
  Diff = Identity;
  if (path == nullptr) {
    DatumActive = false;
    return;
  }
  // A refused file leaves DatumActive as it was.
  auto grid = std::make_unique<InterpFile>(path, false);
  if (grid->Depth() < 2) {
    ReportUnread(HeaderOutOfRange, GridFacility);
  }
  DatumFile = std::move(grid);
  DatumActive = true;
}

void DatumShift::GetEllModel(char* buffer, std::int32_t size) const {
  if (!DatumFile) {
    buffer[0] = '\0';
  } else if (size > 1) {
    std::strncpy(buffer, DatumFile->Path().c_str(), static_cast<std::size_t>(size) - 1);
  }
}

EllDiff DatumShift::LocalEllDiff(const Geographic& position, const Cartesian& own) {
  std::array<double, 3> values;
  std::int32_t count = 0;
  // A point outside the grid changes the ellipsoid without a shift.
  if (DatumFile->Lookup(position.phi, position.lambda, &count, values).code() != 0) {
    return Diff;
  }
  if (count != 2) {
    return Translation(values[0], values[1], values[2]);
  }
  // The grid contains the shift of latitude and longitude from the object's datum to WGS-84, arc seconds.
  const Cartesian wgs84 = WGS84Ellipsoid.GeoECEF(
      {position.phi + ArcSeconds(values[0]), position.lambda + ArcSeconds(values[1]), position.h});
  return Translation(own.X - wgs84.X, own.Y - wgs84.Y, own.Z - wgs84.Z);
}

void DatumShift::WGS84Conv(double& latitude, double& longitude, double* h) {
  if (!DatumActive) {
    return;
  }
  const Geographic wgs84 = Position(latitude, longitude, h);
  const SinCos phi = SinCosOf(wgs84.phi);
  const SinCos lambda = SinCosOf(wgs84.lambda);
  const EllDiff diff = DatumFile ? LocalEllDiff(wgs84, Own.GeoECEF(phi, lambda, wgs84.h)) : Diff;
  const Cartesian position = WGS84Ellipsoid.GeoECEF(phi, lambda, wgs84.h);
  Store(Own.ECEFGeo(Forward(diff, position)), latitude, longitude, h);
}

void DatumShift::InvWGS84Conv(double& latitude, double& longitude, double* h) {
  if (!DatumActive) {
    return;
  }
  const Geographic own = Position(latitude, longitude, h);
  const Cartesian position = Own.GeoECEF(own);
  const EllDiff diff = DatumFile ? LocalEllDiff(own, position) : Diff;
  Store(WGS84Ellipsoid.ECEFGeo(Reverse(diff, position)), latitude, longitude, h);
}

// The seven-parameter transformation applies to any other ellipsoid, a datum grid to WGS-84 only.
bool DatumShift::ShiftsFrom(const Ellipsoid& other) const {
  return !DatumFile && DatumActive && other != Own;
}

void DatumShift::EllConv(double& latitude, double& longitude, double* h, double a, double f) const {
  const Ellipsoid other(a, f);
  if (ShiftsFrom(other)) {
    const Cartesian position = other.GeoECEF(Position(latitude, longitude, h));
    Store(Own.ECEFGeo(Forward(Diff, position)), latitude, longitude, h);
  }
}

void DatumShift::InvEllConv(double& latitude, double& longitude, double* h, double a, double f) const {
  const Ellipsoid other(a, f);
  if (ShiftsFrom(other)) {
    const Cartesian position = Own.GeoECEF(Position(latitude, longitude, h));
    Store(other.ECEFGeo(Reverse(Diff, position)), latitude, longitude, h);
  }
}

}  // namespace latigo
