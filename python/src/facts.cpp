#include "facts.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <initializer_list>
#include <iterator>

namespace py = pybind11;

namespace latigo::python {

namespace {

const char* Words(std::int32_t kind) {
  switch (kind) {
#define LATIGO_KIND(Class, name, number, code, words, ...) \
  case number:                                             \
    return words;
#include "kinds.def"
#undef LATIGO_KIND
    default:
      return "";
  }
}

std::string Small(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

// A path or name of a file as the interpreter has it.
py::object Path(const std::string& bytes) {
  return py::reinterpret_steal<py::object>(
      PyUnicode_DecodeFSDefaultAndSize(bytes.data(), static_cast<Py_ssize_t>(bytes.size())));
}

// Copies, since a reference to a double of a packed record would not be aligned.
py::tuple Numbers(std::initializer_list<double> values) {
  py::tuple numbers(values.size());
  std::size_t i = 0;
  for (const double value : values) {
    numbers[i++] = value;
  }
  return numbers;
}

// South, west, north and east of a grid file, radians; None without a file.
py::object AreaOf(const GridFile* file) {
  if (file == nullptr) {
    return py::none();
  }
  const DatumArea area(*file);
  return py::make_tuple(area.South(), area.West(), area.North(), area.East());
}

}  // namespace

py::dict Facts(Engine& engine) {
  const Engine::Lease lease(engine, 1);
  const Handle& handle = lease.First();
  const api::Geodesy& object = handle.Api();
  const GeodesyParams p = object.GetGeodesyParams().value;
  const EllDiff d = object.GetEllDiff().value;
  const Adjustment a = object.GetAdjustment().value;
  py::dict facts;
  facts["params"] =
      Numbers({p.SemiMajorAxis, p.InvFlattening, static_cast<double>(p.Kind), p.Unit, p.ScaleFactor, p.CentralMeridian,
               p.RefLatitude, p.NorthParallel, p.SouthParallel, p.SkewAzimuth, p.FalseEasting, p.FalseNorthing});
  facts["kind"] = Words(p.Kind);
  facts["code"] = object.ProjectionCode().value;
  facts["ellipsoid"] = object.EllipsoidName().value;
  facts["unit"] = object.Metres(1).value;
  facts["vertical_unit"] = object.VerticalMetres(1).value;
  facts["has_vertical_unit"] = handle.HasVerticalUnit();
  facts["datum"] = Numbers({d.DeltaX, d.DeltaY, d.DeltaZ, d.DeltaScale, d.DeltaRX, d.DeltaRY, d.DeltaRZ});
  facts["datum_grid"] = Path(object.GetEllModel().value);
  facts["datum_area"] = AreaOf(handle.DatumFile());
  facts["adjust_type"] = std::uint32_t{a.AdjustType};
  facts["adjustment"] = Numbers({a.AdjustOrigX, a.AdjustOrigY, a.AdjustRotation, a.AdjustScale, a.AdjustX, a.AdjustY});
  facts["geoid"] = Path(object.GetGeoid()->fileName);
  facts["geoid_constant"] = object.GetGeoid()->orthoHCorr;
  facts["geoid_area"] = AreaOf(handle.GeoidFile());
  return facts;
}

py::object NameOf(Engine& engine, std::int32_t request, const std::string& language) {
  const Engine::Lease lease(engine, 1);
  const api::Result<std::string> name = lease.First().Api().GetLocalName(request, language.c_str());
  if (!name) {
    return py::none();
  }
  return py::reinterpret_steal<py::object>(
      PyUnicode_Decode(name->data(), static_cast<Py_ssize_t>(name->size()), "cp1252", "strict"));
}

std::vector<KindName> KindNames() {
  std::vector<KindName> names;
  const auto add = [&](std::int32_t number, std::initializer_list<const char*> all) {
    std::transform(all.begin(), all.end(), std::back_inserter(names), [number](const char* name) {
      return KindName{Small(name), number};
    });
  };
#define LATIGO_KIND(Class, name, number, code, words, ...) add(number, {#name, code, words, __VA_ARGS__});
#include "kinds.def"
#undef LATIGO_KIND
  return names;
}

}  // namespace latigo::python
