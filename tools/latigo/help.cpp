#include "help.h"

namespace latigo::cli {

namespace {

constexpr std::string_view Program = R"(LATIGO: geodesy for survey and mapping programs
Usage: latigo COMMAND [OPTIONS] FILE [POINTS...]
       latigo COMMAND --help

FILE is a configuration file; each of its sections describes a coordinate system.

Commands:
  info        print what a section describes, or every section of the file
  check       report by the exit status alone whether info has something to warn of
  forward     latitude and longitude to easting and northing
  inverse     easting and northing to latitude and longitude
  scale       latitude and longitude to the point scale factor
  undulation  latitude and longitude to the geoid undulation
  ecef        latitude, longitude and height to earth-centred X, Y, Z, or back
  distance    two positions to distance and azimuth

Options:
  -h, --help  print this help, or that of a command, and exit
  --version   print the version and exit
)";

constexpr std::string_view Info = R"(Prints what a section describes, or every section of the file.
Usage: latigo info [OPTIONS] FILE

Options:
  -h, --help            print this help and exit
  -s, --section NAME    section of the file; without it all
  --strict              every warning is a failure
  --lang eng|fra|esp    language of the names; eng if not given

Exit status: 0; 1 if a section does not open; 2 for a wrong file, section or argument, or, with --strict, for a warning.
)";

constexpr std::string_view Check = R"(Reports by its exit status alone whether info has something to warn of.
Usage: latigo check [OPTIONS] FILE

Options:
  -h, --help            print this help and exit
  -s, --section NAME    section of the file; without it all
  --strict              accepted as for the other commands; check is always strict

Exit status: 0; 2 if there is a warning, if the file cannot be read or a section does not open.
)";

constexpr std::string_view Forward =
    R"(Latitude and longitude to easting and northing (x and y). An ellipsoidal height becomes
the height less the undulation if the section has a geoid.
Usage: latigo forward [OPTIONS] FILE [POINTS...]

Options of this command:
  --wgs84               the input is WGS-84 and goes through the datum shift first
  --outside-grid fail|unshifted
                        a point outside the datum grid, or in rows that cannot be read, fails (the default),
                        or keeps its latitude and longitude with a warning
  --geoid-on-datum      the geoid belongs to the section's own ellipsoid; without it and with --wgs84 it belongs
                        to WGS-84
  --no-height           the third field is no height and is carried through
)";

constexpr std::string_view Inverse =
    R"(Easting and northing (x and y) to latitude and longitude. A height becomes the height
plus the undulation if the section has a geoid.
Usage: latigo inverse [OPTIONS] FILE [POINTS...]

Options of this command:
  --wgs84               the output is WGS-84, after the datum shift
  --outside-grid fail|unshifted
                        a point outside the datum grid, or in rows that cannot be read, fails (the default),
                        or keeps its latitude and longitude with a warning
  --geoid-on-datum      the geoid belongs to the section's own ellipsoid; without it and with --wgs84 it belongs
                        to WGS-84
  --no-height           the third field is no height and is carried through
)";

constexpr std::string_view Scale = R"(Latitude and longitude to the point scale factor.
Usage: latigo scale [OPTIONS] FILE [POINTS...]

Options of this command:
  --wgs84               the input is WGS-84 and goes through the datum shift first
  --outside-grid fail|unshifted
                        a point outside the datum grid, or in rows that cannot be read, fails (the default),
                        or keeps its latitude and longitude with a warning
  --grid                read x and y of the projection, before any local grid
)";

constexpr std::string_view Undulation = R"(Latitude and longitude to the geoid undulation.
Usage: latigo undulation [OPTIONS] FILE [POINTS...]

Options of this command:
  --wgs84               the input is WGS-84 and goes through the datum shift first
  --outside-grid fail|unshifted
                        a point outside the datum grid, or in rows that cannot be read, fails (the default),
                        or keeps its latitude and longitude with a warning
  --geoid-on-datum      the geoid belongs to the section's own ellipsoid; without it and with --wgs84 it belongs
                        to WGS-84
)";

constexpr std::string_view Ecef =
    R"(Latitude, longitude and height (0 if there is none) to earth-centred X, Y, Z in metres,
on the section's own ellipsoid.
Usage: latigo ecef [OPTIONS] FILE [POINTS...]

Options of this command:
  --inverse             X, Y, Z to latitude, longitude and height
)";

constexpr std::string_view Distance =
    R"(Lines of two positions, latitude and longitude each, to the distance in grid units with
the unit's name, and the azimuth at the first position in degrees, clockwise from north. Of the two ways round the
earth the shorter one is measured.
Usage: latigo distance [OPTIONS] FILE [POINTS...]

Options of this command:
  --rhumb               along the rhumb line instead of the great circle
)";

// Follows the text of each command that reads points.
constexpr std::string_view Points = R"(
Options of all commands that read points:
  -h, --help            print this help and exit
  -s, --section NAME    section of the file; Geodesy if not given
  --strict              every warning is a failure: of the point, or of the file
  --precision DIGITS    decimals, 0 to 15
  --jobs THREADS        threads, 1 to 256; the order of the lines stays
  --dms                 write angles as degrees, minutes and seconds
  --separator auto|comma|semicolon|tab|blank
                        what separates fields; auto is blanks or commas. With comma 391390,5817855 is a point
  --lonlat              longitude before latitude, in input and output

Points are read from files, or from standard input if there are none or for -, one a line: two coordinates, perhaps a
height, and anything else, which is carried through. Angles are decimal degrees or degrees, minutes and seconds (52.5,
52:30:00N, 52°30'00"N). Heights are metres; on the grid's side they are vertical units if the section has the key
VertUnit. Blank lines and lines that begin with # are copied.

Invalid lines and failed points print * for each value, and a message. Far from the projection's origin a position
whose round trip misses by more than a metre is a warning; latigo(1) has the limits.

Exit status: 0; 1 if a point failed; 2 for a wrong file, section or argument, and for output that cannot be written.
)";

struct Help {
  std::string_view command;
  std::string_view text;
  bool readsPoints;
};

constexpr Help Texts[] = {
    {"info", Info, false},  {"check", Check, false},          {"forward", Forward, true}, {"inverse", Inverse, true},
    {"scale", Scale, true}, {"undulation", Undulation, true}, {"ecef", Ecef, true},       {"distance", Distance, true},
};

}  // namespace

std::string HelpOf(std::string_view command) {
  for (const Help& help : Texts) {
    if (help.command == command) {
      return std::string(help.text).append(help.readsPoints ? Points : "");
    }
  }
  return std::string(Program);
}

}  // namespace latigo::cli
