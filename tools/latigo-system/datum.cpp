#include "datum.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

#include "measure.h"

namespace latigo::system {

namespace {

constexpr double ArcSecond = std::numbers::pi / 648000;
constexpr std::string_view NullGrid = "null";  // PROJ's name: latitudes and longitudes stay as they are

// Parameters of transformations, by the codes that the EPSG data set gives them.
enum ParameterCode {
  TranslationX = 8605,
  RotationX = 8608,
  ScaleDifference = 8611,
};
constexpr std::array<int, 3> EvaluationPoint = {8617, 8618, 8667};

// X' = (1 + m) R X + T of geocentric coordinates, R of small rotations by the position vector convention:
// R X = X + r x X.
struct Similarity {
  double m = 0;
  std::array<double, 3> r{};  // radians
  std::array<double, 3> t{};  // metres

  std::array<double, 3> Turned(const std::array<double, 3>& x) const {
    return {(1 + m) * (x[0] - r[2] * x[1] + r[1] * x[2]), (1 + m) * (x[1] + r[2] * x[0] - r[0] * x[2]),
            (1 + m) * (x[2] - r[1] * x[0] + r[0] * x[1])};
  }

  // This one first, then the other.
  Similarity Then(const Similarity& other) const {
    Similarity both;
    both.m = (1 + m) * (1 + other.m) - 1;
    const std::array<double, 3> moved = other.Turned(t);
    for (std::size_t i = 0; i < 3; ++i) {
      both.r[i] = r[i] + other.r[i];
      both.t[i] = moved[i] + other.t[i];
    }
    return both;
  }
};

// What a method of transformation is to us.
enum class Kind {
  Conversion,
  LongitudeRotation,
  Translation,
  PositionVector,
  CoordinateFrame,
  OnPointVector,
  OnPointFrame,
  Other
};

Kind KindOf(int method) {
  switch (method) {
    case 9602:  // geographic and geocentric
    case 9659:  // three and two dimensions
    case 9843:
    case 9844:  // order of axes
    case 1069:  // unit of angles
    case 1104:  // unit of heights
      return Kind::Conversion;
    case 9601:
      return Kind::LongitudeRotation;
    case 9603:
    case 1031:
    case 1035:
      return Kind::Translation;
    case 9606:
    case 1033:
    case 1037:
      return Kind::PositionVector;
    case 9607:
    case 1032:
    case 1038:
      return Kind::CoordinateFrame;
    case 1061:
    case 1062:
    case 1063:
      return Kind::OnPointVector;
    case 1034:
    case 1039:
    case 9636:
      return Kind::OnPointFrame;
    default:
      return Kind::Other;
  }
}

double SiOf(const Method& method, int code) {
  return method.Has(code) ? method.Find(code).Si() : 0;
}

// Helmert and Molodensky-Badekas: X' = (1 + m) R (X - P) + P + T.
Similarity SimilarityOf(const Method& method, Kind kind) {
  Similarity to;
  const double sign = kind == Kind::CoordinateFrame || kind == Kind::OnPointFrame ? -1 : 1;
  std::array<double, 3> p{};
  for (int i = 0; i < 3; ++i) {
    const auto axis = static_cast<std::size_t>(i);
    to.t[axis] = SiOf(method, TranslationX + i);
    to.r[axis] = sign * SiOf(method, RotationX + i);
    p[axis] = SiOf(method, EvaluationPoint[axis]);
  }
  to.m = SiOf(method, ScaleDifference);
  if (kind == Kind::OnPointVector || kind == Kind::OnPointFrame) {
    const std::array<double, 3> turned = to.Turned(p);
    for (std::size_t i = 0; i < 3; ++i) {
      to.t[i] += p[i] - turned[i];
    }
  }
  return to;
}

// The target's longitudes are the source's plus an offset, each counted from its own prime meridian. A section's count
// from Greenwich, which leaves a rotation about Z, or nothing if the step only changes the prime meridian.
Similarity SimilarityOfLongitudes(const Database& database, const Method& method, const PJ* step) {
  constexpr int LongitudeOffset = 8602;
  constexpr double Nothing = 1e-10;  // radians
  PJ_CONTEXT* const context = database.Context();
  const Pj source(proj_get_source_crs(context, step));
  const Pj target(proj_get_target_crs(context, step));
  const double change = GreenwichLongitude(database, target.get()) - GreenwichLongitude(database, source.get());
  const double rotation = SiOf(method, LongitudeOffset) + change * std::numbers::pi / 180;
  Similarity to;
  to.r[2] = std::abs(rotation) < Nothing ? 0 : rotation;
  return to;
}

// The section's inverse is X_wgs = R X / s - D with the same rotation, so s = 1 / (1 + m) and D = -T.
SevenParameters Ours(const Similarity& to) {
  SevenParameters ours;
  for (std::size_t i = 0; i < 3; ++i) {
    ours.translation[i] = to.t[i] == 0 ? 0 : Clean(-to.t[i]);
    ours.rotation[i] = Clean(to.r[i] / ArcSecond);
  }
  ours.scale = to.m == 0 ? 0 : Clean(-to.m / (1 + to.m) * 1e6);
  return ours;
}

// Adds one step of an operation to what the steps before it do. Returns the reason if it cannot be expressed.
std::string AddStep(const Database& database, const PJ* step, Similarity& sum) {
  const Method method = MethodOf(database, step);
  const Kind kind = KindOf(method.code);
  const bool isNull = std::all_of(method.parameters.begin(), method.parameters.end(),
                                  [](const Parameter& each) { return each.value == 0; });
  if (kind == Kind::Conversion || proj_get_type(step) == PJ_TYPE_CONVERSION ||
      (isNull && method.name.find("offset") != std::string::npos)) {
    return "";
  }
  if (kind == Kind::Other) {
    return method.Label() + " is none of a section's shifts";
  }
  sum = sum.Then(kind == Kind::LongitudeRotation ? SimilarityOfLongitudes(database, method, step)
                                                 : SimilarityOf(method, kind));
  return "";
}

// Grids of horizontal shifts, in the direction to WGS 84; PROJ has names of its own for files of its own.
bool IsGridShift(const Method& method) {
  constexpr std::array<int, 6> Codes = {9613, 9614, 9615, 9655, 1074, 1087};  // NADCON, NTv1, NTv2, geocentric, ...
  return method.name.starts_with("HORIZONTAL_SHIFT") ||
         (std::find(Codes.begin(), Codes.end(), method.code) != Codes.end() && !method.name.starts_with("Inverse"));
}

// Adds what one step does to the operation.
void ReadStep(const Database& database, const PJ* step, Similarity& sum, Operation& operation) {
  PJ_CONTEXT* const context = database.Context();
  const int grids = proj_coordoperation_get_grid_used_count(context, step);
  for (int i = 0; i < grids; ++i) {
    const char* name = nullptr;
    proj_coordoperation_get_grid_used(context, step, i, &name, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    const std::string grid = Text(name);
    operation.grids.push_back(grid.starts_with('@') ? grid.substr(1) : grid);  // @: may be missing
    if (OneLine(grid) != grid) {
      operation.reason = "the name of its grid is no file name";
    }
  }
  if (grids == 0) {
    operation.reason += AddStep(database, step, sum);
  } else if (const Method method = MethodOf(database, step); !IsGridShift(method)) {
    operation.reason += "a section has no grid by " + method.Label();
  }
}

void ReadSteps(const Database& database, Operation& operation) {
  PJ_CONTEXT* const context = database.Context();
  const PJ* const object = operation.object.get();
  Similarity sum;
  if (proj_get_type(object) == PJ_TYPE_CONCATENATED_OPERATION) {
    for (int i = 0; i < proj_concatoperation_get_step_count(context, object) && operation.reason.empty(); ++i) {
      const Pj step(proj_concatoperation_get_step(context, object, i));
      ReadStep(database, step.get(), sum, operation);
    }
  } else {
    ReadStep(database, object, sum, operation);
  }
  operation.parameters = Ours(sum);
  const bool grid = !operation.grids.empty();
  if (grid && operation.reason.empty() && (operation.grids.size() > 1 || !operation.parameters.IsNull())) {
    operation.reason = "a section has one grid, and no parameters beside it";
  }
  operation.form = !operation.reason.empty()        ? Operation::Form::NotExpressible
                   : !grid                          ? Operation::Form::Parameters
                   : operation.grids[0] == NullGrid ? Operation::Form::Unshifted
                                                    : Operation::Form::Grid;
}

Operation ReadOperation(const Database& database, Pj object) {
  Operation operation;
  operation.object = std::move(object);
  const PJ* const pj = operation.object.get();
  if (const std::string authority = Text(proj_get_id_auth_name(pj, 0)); !authority.empty()) {
    constexpr std::string_view Derived = "DERIVED_FROM(";  // with a grid file of another name
    const bool derived = authority.starts_with(Derived);
    operation.id = (derived ? authority.substr(Derived.size(), authority.size() - Derived.size() - 1) : authority) +
                   ":" + Text(proj_get_id_code(pj, 0));
  }
  operation.name = Text(proj_get_name(pj));
  operation.accuracy = proj_coordoperation_get_accuracy(database.Context(), pj);
  operation.area = AreaOf(database, pj);
  ReadSteps(database, operation);
  return operation;
}

Pj Wgs84(const Database& database) {
  return Pj(proj_create_from_database(database.Context(), "EPSG", "4326", PJ_CATEGORY_CRS, 0, nullptr));
}

using Factory = std::unique_ptr<PJ_OPERATION_FACTORY_CONTEXT,
                                Destroyer<PJ_OPERATION_FACTORY_CONTEXT, proj_operation_factory_context_destroy>>;

Factory MakeFactory(const Database& database, const Area& area) {
  PJ_CONTEXT* const context = database.Context();
  Factory factory(proj_create_operation_factory_context(context, nullptr));
  proj_operation_factory_context_set_spatial_criterion(context, factory.get(),
                                                       PROJ_SPATIAL_CRITERION_PARTIAL_INTERSECTION);
  proj_operation_factory_context_set_grid_availability_use(context, factory.get(), PROJ_GRID_AVAILABILITY_IGNORED);
  proj_operation_factory_context_set_allow_ballpark_transformations(context, factory.get(), 0);
  if (!area.name.empty()) {
    proj_operation_factory_context_set_area_of_interest(context, factory.get(), area.west, area.south,
                                                        area.east > 180 ? area.east - 360 : area.east, area.north);
  }
  return factory;
}

// The file that a section names for a grid of the public formats; without its folder.
std::string GridFile(const std::string& source) {
  const std::string file = source.substr(source.find_last_of("/\\") + 1);
  return file.substr(0, file.rfind('.')) + ".dat";
}

}  // namespace

bool SevenParameters::IsNull() const {
  const auto zero = [](double value) { return value == 0; };
  return scale == 0 && std::all_of(translation.begin(), translation.end(), zero) &&
         std::all_of(rotation.begin(), rotation.end(), zero);
}

std::string Operation::Accuracy() const {
  return accuracy >= 0 ? Digits(accuracy) + " m" : "accuracy not known";
}

std::string Operation::Summary() const {
  std::string text = Accuracy();
  switch (form) {
    case Form::NotExpressible:
      return text + "; " + reason;
    case Form::Grid:
      text += "; grid";
      for (const std::string& grid : grids) {
        text += " " + grid;
      }
      return text;
    case Form::Unshifted:
      return text + "; null grid";
    default:
      break;
  }
  if (parameters.IsNull()) {
    return text + "; no shift";
  }
  constexpr const char* Translations[] = {" DeltaX ", " DeltaY ", " DeltaZ "};
  constexpr const char* Rotations[] = {" DeltaRX ", " DeltaRY ", " DeltaRZ "};
  text += ";";
  for (std::size_t i = 0; i < 3; ++i) {
    text += Translations[i] + Digits(parameters.translation[i]);
  }
  text += parameters.scale != 0 ? " DeltaScale " + Digits(parameters.scale) : "";
  for (std::size_t i = 0; i < 3; ++i) {
    text += parameters.rotation[i] != 0 ? Rotations[i] + Digits(parameters.rotation[i]) : "";
  }
  return text;
}

bool IsWgs84(const Database& database, const Crs& crs) {
  const Pj wgs84 = Wgs84(database);
  const Pj ours(proj_crs_get_datum_forced(database.Context(), crs.geodetic.get()));
  const Pj theirs(proj_crs_get_datum_forced(database.Context(), wgs84.get()));
  return ours && theirs && crs.primeMeridian == 0 &&
         proj_is_equivalent_to(ours.get(), theirs.get(), PJ_COMP_EQUIVALENT) != 0;
}

std::vector<Operation> OperationsToWgs84(const Database& database, const Crs& crs) {
  std::vector<Operation> operations;
  if (crs.boundShift) {
    const Pj target(proj_get_target_crs(database.Context(), crs.boundShift.get()));
    if (target && Text(proj_get_name(target.get())).find("WGS 84") == std::string::npos) {
      throw Refused("its definition leads to " + Text(proj_get_name(target.get())) + ", and a section to WGS 84");
    }
    operations.push_back(ReadOperation(database, Pj(proj_clone(database.Context(), crs.boundShift.get()))));
    return operations;
  }
  if (IsWgs84(database, crs)) {
    return operations;
  }
  const Factory factory = MakeFactory(database, crs.area);
  const Pj wgs84 = Wgs84(database);
  const PjList list(proj_create_operations(database.Context(), crs.geodetic.get(), wgs84.get(), factory.get()));
  const int count = list ? proj_list_get_count(list.get()) : 0;
  for (int i = 0; i < count; ++i) {
    Pj object(proj_list_get(database.Context(), list.get(), i));
    if (object && proj_coordoperation_has_ballpark_transformation(database.Context(), object.get()) == 0) {
      operations.push_back(ReadOperation(database, std::move(object)));
    }
  }
  return operations;
}

std::string List(const std::vector<Operation>& operations) {
  std::string text;
  for (std::size_t i = 0; i < operations.size(); ++i) {
    const Operation& each = operations[i];
    text += std::to_string(i + 1) + "  " + (each.id.empty() ? "" : each.id + "  ") + OneLine(each.name) + "\n     " +
            OneLine(each.Summary()) + "\n     " + each.area.name + "\n";
  }
  return text;
}

namespace {

const Operation* Asked(const std::vector<Operation>& operations, const std::string& wanted) {
  char* end = nullptr;
  const unsigned long number = std::strtoul(wanted.c_str(), &end, 10);
  for (std::size_t i = 0; i < operations.size(); ++i) {
    if (operations[i].id == wanted || (*end == '\0' && number == i + 1)) {
      if (operations[i].form == Operation::Form::NotExpressible) {
        throw Refused("operation " + wanted + " cannot be expressed: " + operations[i].reason);
      }
      return &operations[i];
    }
  }
  throw Refused("there is no operation " + wanted + " among the " + std::to_string(operations.size()) + " to WGS 84");
}

}  // namespace

const Operation* Choose(const std::vector<Operation>& operations, const Choice& choice) {
  if (choice.none) {
    return nullptr;
  }
  if (!choice.operation.empty()) {
    return Asked(operations, choice.operation);
  }
  // One that needs no file comes before one that does: the section opens at once.
  const Operation* best = nullptr;
  std::size_t fits = 0;
  for (const Operation& each : operations) {
    const bool here = !choice.position || each.area.name.empty() ||  // not known, as in a definition's own
                      each.area.Holds((*choice.position)[0], (*choice.position)[1]);
    if (here && each.form != Operation::Form::NotExpressible) {
      ++fits;
      best = best == nullptr || (best->form == Operation::Form::Grid && each.form == Operation::Form::Parameters)
                 ? &each
                 : best;
    }
  }
  if (choice.position && best == nullptr && !operations.empty()) {
    throw Refused("no operation to WGS 84 is meant for that place");
  }
  if (!choice.position && fits > 1) {
    throw Ambiguous(
        std::to_string(fits) +
        " operations lead to WGS 84: choose one with --operation, the best for a place with --area LAT,LON, "
        "or none with --no-datum");
  }
  return best;
}

void SetShift(const Crs& crs, const Operation& operation, Section& section) {
  section.Comment("Datum: " + (operation.id.empty() ? "" : operation.id + " ") + operation.name + ", " +
                  operation.Accuracy() + (operation.area.name.empty() ? "" : "; " + operation.area.name));
  if (operation.form == Operation::Form::Grid) {
    const std::string source = operation.grids.front();
    section.Comment("  The grid file is made by: latigo-grid make " + source + " -o " + GridFile(source));
    section.Set("DynDatum", GridFile(source));
    return;
  }
  if (operation.form == Operation::Form::Unshifted) {
    section.Comment("  It has the null grid: latitudes and longitudes stay as they are.");
    return;
  }
  const SevenParameters& ours = operation.parameters;
  // Without translation and rotation a section shifts nothing, not even between the ellipsoids.
  constexpr double Wgs84SemiMajorAxis = 6378137;
  const bool sameEllipsoid =
      crs.semiMajorAxis == Wgs84SemiMajorAxis && std::abs(crs.inverseFlattening - 298.2572236) < 1e-6 * 298;
  const bool nothing = std::all_of(ours.translation.begin(), ours.translation.end(), [](double d) { return d == 0; }) &&
                       std::all_of(ours.rotation.begin(), ours.rotation.end(), [](double d) { return d == 0; });
  constexpr double Nanometre = 1e-9;
  if (nothing && !(sameEllipsoid && ours.scale == 0)) {
    section.Comment("  With DeltaX 0 there would be no change of the ellipsoid either.");
  }
  section.Set("DeltaX", nothing && !(sameEllipsoid && ours.scale == 0) ? Nanometre : ours.translation[0]);
  if (nothing && sameEllipsoid && ours.scale == 0) {
    section.Set("DeltaX", std::string_view("0"));  // states that the datum is WGS 84, for latigo convert
  }
  section.Set("DeltaY", ours.translation[1]);
  section.Set("DeltaZ", ours.translation[2]);
  section.Set("DeltaScale", ours.scale);
  section.Set("DeltaRX", ours.rotation[0]);
  section.Set("DeltaRY", ours.rotation[1]);
  section.Set("DeltaRZ", ours.rotation[2]);
}

}  // namespace latigo::system
