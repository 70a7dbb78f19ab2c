#include "distances.h"

#include <cmath>

#include "operations.h"

namespace latigo::cli {

namespace {

constexpr double LargestError = 0.02;  // of a length that is not doubtful, metres

// The error of the mid-latitude formulas, measured beside geodesics on WGS 84 and rounded up: 16 mm for 100 km, growing
// with the third power of the length s; and near a pole the first term that the series leaves, s (s tan phi / R)^4 /
// 1920.
constexpr double ErrorAt100Km = 0.016;  // metres
constexpr double SeriesEnd = 1 / 1920.0;
constexpr double EarthRadius = 6371000;  // metres

constexpr double RhumbNoise = 2e-9;  // of the meridian arc between two parallels, metres

// The line between the positions on the section's datum, for an operation on degrees.
PointLine LineOf(const Ends& ends) {
  PointLine line;
  line.first = ends.from.latitude / RadiansPerDegree;
  line.second = ends.from.longitude / RadiansPerDegree;
  line.toFirst = ends.to.latitude / RadiansPerDegree;
  line.toSecond = ends.to.longitude / RadiansPerDegree;
  return line;
}

double MidLatitudeError(const Ends& ends, double metres) {
  const double T = std::tan((ends.from.latitude + ends.to.latitude) / 2);
  const double relative = metres * T / EarthRadius;
  return ErrorAt100Km * std::pow(metres / 1e5, 3) + metres * std::pow(relative, 4) * SeriesEnd;
}

}  // namespace

bool ReadEnds(const Converter& converter, const PointLine& line, Ends& ends, Result& result) {
  PointLine second;
  second.first = line.toFirst;
  second.second = line.toSecond;
  PointLine first = line;
  first.third.reset();
  return converter.ReadGeographic(first, ends.from, result) && converter.ReadGeographic(second, ends.to, result);
}

void DistanceOfGreatCircle(const Converter& converter, const PointLine& line, Result& result) {
  Ends ends;
  if (!ReadEnds(converter, line, ends, result)) {
    return;
  }
  GreatCircle(converter, LineOf(ends), result);
  double metres = result.values[0].value;
  HConvert(converter.Handle(), &metres, LATIGO_TO_METRES);
  if (!(MidLatitudeError(ends, metres) <= LargestError)) {
    result.Add(Doubt::LongLine);
  }
}

void DistanceOfRhumbLine(const Converter& converter, const PointLine& line, Result& result) {
  Ends ends;
  if (!ReadEnds(converter, line, ends, result)) {
    return;
  }
  RhumbLine(converter, LineOf(ends), result);
  // The length is a meridian arc divided by the cosine of the azimuth, except between equal latitudes.
  const double cosine = std::cos(result.values[1].value * RadiansPerDegree);
  if (ends.from.latitude != ends.to.latitude && !(RhumbNoise <= LargestError * std::fabs(cosine))) {
    result.Add(Doubt::FlatRhumbLine);
  }
}

}  // namespace latigo::cli
