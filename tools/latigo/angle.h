// Notations of angles in degrees.
#pragma once

#include <string_view>

namespace latigo::cli {

enum class Axis { Latitude, Longitude, Azimuth };

// A parsed number, or the reason why the text is not a number.
struct Parsed {
  double value = 0;
  const char* fault = nullptr;  // null for success
};

// A whole text that is a finite number with a decimal point.
Parsed ParseNumber(std::string_view text);

// Decimal degrees, or degrees, minutes and seconds: 52.5, -1.5, 1e-05, 52:30:00N, 52:30.5, 52-30-00N, 52 30 00 N,
// 52d30m00s, 52 deg 30 min, 52°30'00"N, also with typographic marks. Either a sign before it, or a hemisphere letter
// before or after it, with or without blanks. Latitudes up to 90 degrees, longitudes up to 360.
Parsed ParseAngle(std::string_view text, Axis axis);

// The text without a degree mark at its end.
std::string_view WithoutDegreeMark(std::string_view text);

// Writes an angle of at most 360 degrees as D:MM:SS.sss, with a hemisphere letter; azimuths have none, but a minus sign
// if they are negative. It is rounded as a whole, so 60 seconds do not occur. Returns the end of the text; a buffer of
// 64 characters is enough.
char* WriteDms(char* buffer, double degrees, Axis axis, int precision);

}  // namespace latigo::cli
