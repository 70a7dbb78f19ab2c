#include "distances.h"

#include "operations.h"

namespace latigo::cli {

namespace {

// The line between the positions on the section's datum, for an operation on degrees.
PointLine LineOf(const Ends& ends) {
  PointLine line;
  line.first = ends.from.latitude / RadiansPerDegree;
  line.second = ends.from.longitude / RadiansPerDegree;
  line.toFirst = ends.to.latitude / RadiansPerDegree;
  line.toSecond = ends.to.longitude / RadiansPerDegree;
  return line;
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
  if (IsLongLine((ends.from.latitude + ends.to.latitude) / 2, metres)) {
    result.Add(Doubt::LongLine);
  }
}

void DistanceOfRhumbLine(const Converter& converter, const PointLine& line, Result& result) {
  Ends ends;
  if (!ReadEnds(converter, line, ends, result)) {
    return;
  }
  RhumbLine(converter, LineOf(ends), result);
  if (IsFlatRhumbLine(ends.from.latitude, ends.to.latitude, result.values[1].value * RadiansPerDegree)) {
    result.Add(Doubt::FlatRhumbLine);
  }
}

}  // namespace latigo::cli
