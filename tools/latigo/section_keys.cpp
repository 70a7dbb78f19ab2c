#include "section_keys.h"

#include <latigo/latigo.h>

#include <algorithm>

#include "platform/ascii.h"

namespace latigo::cli {

namespace {

// clang-format off
constexpr ExampleSection Systems[] = {
    {LATIGO_KIND_LAMBERT, "LCC", "Lambert93", "RGF93 / Lambert-93, France",
     "6378137", "298.257222101", "1", "1", "3", "46.5", "49", "44", nullptr, "700000", "6600000"},
    {LATIGO_KIND_MERCATOR, "MER", "Caspian", "Pulkovo 1942 / Caspian Sea Mercator",
     "6378245", "298.3", "1", nullptr, "51", "42", nullptr, nullptr, nullptr, "0", "0"},
    {LATIGO_KIND_TRANSVERSE_MERCATOR, "TME", "NationalGrid", "OSGB36 / British National Grid",
     "6377563.396", "299.3249646", "1", "0.9996012717", "-2", "49", nullptr, nullptr, nullptr, "400000", "-100000"},
    {LATIGO_KIND_OBLIQUE_STEREOGRAPHIC, "OST", "RD", "Amersfoort / RD New, Netherlands",
     "6377397.155", "299.1528128", nullptr, "0.9999079", "5.387638888888889", "52.156160555555556",
     nullptr, nullptr, nullptr, "155000", "463000"},
    {LATIGO_KIND_OBLIQUE_CYLINDRICAL, "OCY", "LV95", "CH1903+ / LV95, Switzerland",
     "6377397.155", "299.1528128", "1", "1", "7.439583333333333", "46.952405555555556",
     nullptr, nullptr, nullptr, "2600000", "1200000"},
    {LATIGO_KIND_HOTINE, "HOM", "Michigan", "NAD83 / Michigan Oblique Mercator",
     "6378137", "298.257222101", "1", "0.9996", "-86", "45.30916666666666",
     nullptr, nullptr, "337.25556", "2546731.496", "-4354009.816"},
    {LATIGO_KIND_RSO, "RSO", "BorneoRSO", "Timbalai 1948 / RSO Borneo (m)",
     "6377298.556", "300.8017", "1", "0.99984", "115", "4", nullptr, nullptr, "53.315820472222222", "0", "0"},
    {LATIGO_KIND_AZIMUTHAL_EQUIDISTANT, "AZD", "Yap", "Guam 1963 / Yap Islands",
     "6378206.4", "294.9786982", "1", nullptr, "138.168744444444444", "9.546708333333333",
     nullptr, nullptr, nullptr, "40000", "60000"},
    {LATIGO_KIND_MERCATOR_ON_SPHERE, "SMERC", "Sphere", "a sphere of 6378388 metres; the ellipsoid is for distances",
     "6378137", "298.257223563", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr},
    {LATIGO_KIND_ALBERS, "ALA", "ConusAlbers", "NAD83 / Conus Albers, United States",
     "6378137", "298.257222101", "1", nullptr, "-96", "23", "29.5", "45.5", nullptr, "0", "0"},
    {LATIGO_KIND_CASSINI, "CAS", "TrinidadGrid", "Trinidad 1903 / Trinidad Grid, in Clarke's links",
     "6378293.645208759", "294.2606763692567", "0.201166195", nullptr, "-61.333333333333333", "10.441666666666667",
     nullptr, nullptr, nullptr, "430000", "325000"},
    {LATIGO_KIND_POLAR_STEREOGRAPHIC, "PST", "UPSNorth", "universal polar stereographic, north",
     "6378137", "298.257223563", nullptr, "0.994", "0", "90", nullptr, nullptr, nullptr, "2000000", "2000000"},
};

// The texts are those of docs/configuration.md, in its order.
constexpr KeyText Keys[] = {
    {"Projection", "keyword", "the map projection", "refused, code 5", &ExampleSection::keyword},
    {"SemiMajorAxis", "metres", "a of the ellipsoid", "0", &ExampleSection::a},
    {"Flattening", "no unit",
     "the reciprocal flattening 1/f, for instance 298.257223563", "refused, code 3", &ExampleSection::flattening},
    {"Unit", "metres per grid unit", "unit of the grid coordinates", "1", &ExampleSection::unit},
    {"ScaleFactor", "no unit", "central scale factor", "1", &ExampleSection::scale},
    {"CentralMeridian", "degrees", "longitude of origin", "0", &ExampleSection::meridian},
    {"RefLatitude", "degrees",
     "latitude of origin; for Mercator, and for polar stereographic away from the pole, of true scale", "0",
     &ExampleSection::latitude},
    {"NorthParallel", "degrees", "a standard parallel", "0", &ExampleSection::north},
    {"SouthParallel", "degrees",
     "the other standard parallel; equal to the first for a cone with one", "0", &ExampleSection::south},
    {"SkewAzimuth", "degrees", "azimuth of the skew line", "0", &ExampleSection::azimuth},
    {"FalseEasting", "grid units", "false easting", "0", &ExampleSection::easting},
    {"FalseNorthing", "grid units", "false northing", "0", &ExampleSection::northing},
    {"VertUnit", "metres per vertical unit",
     "unit of heights with grid coordinates", "metres in the program latigo", nullptr, "1"},
    {"DynDatum", "file name", "datum grid; replaces the seven parameters below", "no datum grid", nullptr, "datum.dat"},
    {"DeltaX", "metres", "translation from WGS-84 to the system's datum", "0", nullptr, "0"},
    {"DeltaY", "metres", "translation", "0", nullptr, "0"},
    {"DeltaZ", "metres", "translation", "0", nullptr, "0"},
    {"DeltaScale", "parts per million", "scale difference", "0", nullptr, "0"},
    {"DeltaRX", "arc seconds", "rotation about X, coordinate frame convention", "0", nullptr, "0"},
    {"DeltaRY", "arc seconds", "rotation about Y", "0", nullptr, "0"},
    {"DeltaRZ", "arc seconds", "rotation about Z", "0", nullptr, "0"},
    {"AdjustType", "integer",
     "local grid: 1 for a similarity transformation, 2 to 16 for a fixed grid", "none", nullptr, "1"},
    {"ReverseX", "boolean", "mirrors the X axis; type 1 only", "no", nullptr, "no"},
    {"ReverseY", "boolean", "mirrors the Y axis; type 1 only", "no", nullptr, "no"},
    {"AdjustRotation", "degrees", "rotation of the local grid, anticlockwise", "0", nullptr, "0"},
    {"AdjustScale", "no unit", "scale of the local grid", "1", nullptr, "1"},
    {"AdjustX", "grid units", "local X of the origin", "0", nullptr, "0"},
    {"AdjustY", "grid units", "local Y of the origin", "0", nullptr, "0"},
    {"AdjustOrigX", "grid units", "projection x of the origin", "0", nullptr, "0"},
    {"AdjustOrigY", "grid units", "projection y of the origin", "0", nullptr, "0"},
    {"OrthoHCorr", "unit of the geoid grid's values", "constant added to every undulation", "0", nullptr, "0"},
    {"Geoid", "file name", "geoid grid", "no geoid grid", nullptr, "geoid.dat"},
};
// clang-format on

}  // namespace

std::span<const ExampleSection> ExampleSections() {
  return Systems;
}

std::span<const KeyText> KeyTexts() {
  return Keys;
}

bool ReadsKey(std::int32_t kind, std::string_view key) {
  const auto example = std::find_if(std::begin(Systems), std::end(Systems),
                                    [&](const ExampleSection& each) { return each.kind == kind; });
  const auto text = std::find_if(std::begin(Keys), std::end(Keys),
                                 [&](const KeyText& each) { return EqualIgnoringCase(each.name, key); });
  return example == std::end(Systems) || text == std::end(Keys) || text->value == nullptr ||
         (*example).*(text->value) != nullptr;
}

}  // namespace latigo::cli
