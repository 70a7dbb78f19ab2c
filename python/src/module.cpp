// The module latigo._core: what latigo/*.py, which has the interface for users, calls of the library.
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <exception>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "config_check.h"
#include "engine.h"
#include "facts.h"
#include "loop.h"

namespace py = pybind11;

namespace latigo::python {

namespace {

// What becomes of a failed point, and of a point outside the datum grid.
enum class Errors { Raise, Nan, Codes };
enum class Outside { Raise, Warn, Ignore };

Options OptionsOf(bool height, bool wgs84, bool geoidOnDatum, bool radians, int outside) {
  return {wgs84, geoidOnDatum, radians, static_cast<Outside>(outside) != Outside::Raise, height};
}

// Whether a doubt, by the number of its bit, becomes a warning.
bool IsShown(std::size_t doubt, int outside) {
  return 1U << doubt != static_cast<unsigned>(cli::Doubt::Unshifted) || static_cast<Outside>(outside) == Outside::Warn;
}

py::object Python(const char* function) {
  return py::module_::import("latigo._errors").attr(function);
}

[[noreturn]] void Raise(std::int32_t code, const char* function, const py::object& index,
                        const py::object& coordinates) {
  const py::object error = Python("GeodesyError");
  const py::object raised = error(TextOf(code, function), code, function, index, coordinates);
  PyErr_SetObject(error.ptr(), raised.ptr());
  throw py::error_already_set();
}

// Takes the interpreter's lock back. In an interpreter that has ended that is pthread_exit, whose unwinding may pass no
// Python object: the thread waits here for the end of the process.
void TakeLock(PyThreadState* thread) {
  try {
    PyEval_RestoreThread(thread);
  } catch (...) {
    for (;;) {
      pause();
    }
  }
}

// Runs a function without the interpreter's lock.
template <typename Function>
void WithoutLock(const Function& function) {
  PyThreadState* const thread = PyEval_SaveThread();
  std::exception_ptr thrown;
  try {
    function();
  } catch (const std::exception&) {
    thrown = std::current_exception();
  }
  TakeLock(thread);
  if (thrown) {
    std::rethrow_exception(thrown);
  }
}

// A number, or false for anything that is not a plain one: the caller then converts arrays.
bool Number(PyObject* object, double& value) {
  if (PyFloat_Check(object) != 0) {
    value = PyFloat_AS_DOUBLE(object);
    return true;
  }
  if (PyLong_CheckExact(object) == 0) {
    return false;
  }
  value = PyLong_AsDouble(object);
  if (value == -1 && PyErr_Occurred() != nullptr) {
    throw py::error_already_set();
  }
  return true;
}

// Converts one point. NotImplemented if an input is not a float or an integer.
py::object Point(Engine& engine, int operation, const py::tuple& inputs, bool wgs84, bool geoidOnDatum, bool radians,
                 int errors, int outside) {
  std::array<double, MaxInputs> in{};
  std::array<double, MaxOutputs> out{};
  std::size_t count = 0;
  for (const py::handle each : inputs) {
    if (count == in.size() || !Number(each.ptr(), in[count++])) {
      return py::reinterpret_borrow<py::object>(Py_NotImplemented);
    }
  }
  const auto which = static_cast<Operation>(operation);
  const Options plain = OptionsOf(false, wgs84, geoidOnDatum, radians, outside);
  Options options = plain;
  options.height = static_cast<int>(count) > Inputs(which, plain);
  const auto outputs = static_cast<std::size_t>(Outputs(which, options));
  Outcome outcome;
  {
    const Engine::Lease lease(engine, 1);
    Handle& handle = lease.First();
    const auto convert = [&] {
      outcome = ConversionOf(which)(handle, options, static_cast<int>(outputs), in.data(), out.data());
    };
    if (handle.HasFiles()) {  // which may take long
      WithoutLock(convert);
    } else {
      convert();
    }
  }
  if (outcome.code != 0 && static_cast<Errors>(errors) == Errors::Raise) {
    Raise(outcome.code, outcome.function, py::none(), inputs);
  }
  if (outcome.code == 0 && outcome.doubts != 0) {
    for (std::size_t i = 0; i < cli::Doubts; ++i) {
      if ((outcome.doubts >> i & 1U) != 0 && IsShown(i, outside)) {
        Python("warn_doubtful")(operation, cli::DoubtTexts[i], 1, py::none());
      }
    }
  }
  const bool codes = static_cast<Errors>(errors) == Errors::Codes;
  if (outputs == 1 && !codes) {
    return py::float_(out[0]);
  }
  py::tuple result(outputs + (codes ? 1 : 0));
  for (std::size_t k = 0; k < outputs; ++k) {
    result[k] = py::float_(out[k]);
  }
  if (codes) {
    result[outputs] = py::int_(outcome.code);
  }
  return result;
}

Operand OperandOf(const py::array& array) {
  return {static_cast<char*>(const_cast<void*>(array.data())),
          std::vector<std::ptrdiff_t>(array.strides(), array.strides() + array.ndim())};
}

// Converts arrays of one shape, float64. Returns the number of the first failed point or -1, its code, text and
// function, and for each doubt that becomes a warning its text, the number of doubtful points and the first of them.
py::tuple Convert(Engine& engine, int operation, const std::vector<py::array>& inputs,
                  const std::vector<py::array>& outputs, const py::object& codes, bool height, bool wgs84,
                  bool geoidOnDatum, bool radians, bool stop, int outside, int threads) {
  Arrays arrays;
  arrays.shape.assign(inputs.at(0).shape(), inputs.at(0).shape() + inputs.at(0).ndim());
  for (const py::array& array : inputs) {
    arrays.inputs.push_back(OperandOf(array));
  }
  for (const py::array& array : outputs) {
    arrays.outputs.push_back(OperandOf(array));
  }
  if (!codes.is_none()) {
    arrays.codes = static_cast<std::int32_t*>(py::array(codes).mutable_data());
  }
  const auto which = static_cast<Operation>(operation);
  const Options options = OptionsOf(height, wgs84, geoidOnDatum, radians, outside);
  if (static_cast<int>(inputs.size()) != Inputs(which, options) ||
      static_cast<int>(outputs.size()) != Outputs(which, options)) {
    throw py::type_error("a wrong number of arrays");
  }
  Summary summary;
  {
    const Engine::Lease lease(engine, threads);
    WithoutLock([&] { summary = ConvertArrays(which, lease.Handles(), options, arrays, stop); });
  }
  const Outcome& outcome = summary.outcome;
  py::list doubts;
  for (std::size_t i = 0; i < cli::Doubts; ++i) {
    if (summary.doubtful[i].count > 0 && IsShown(i, outside)) {
      doubts.append(py::make_tuple(cli::DoubtTexts[i], summary.doubtful[i].count, summary.doubtful[i].first));
    }
  }
  return py::make_tuple(summary.first, outcome.code, TextOf(outcome.code, outcome.function), outcome.function, doubts);
}

template <typename Record, std::size_t Size>
Record RecordOf(const std::array<double, Size>& values) {
  Record record;
  static_assert(sizeof record == sizeof values);
  std::memcpy(&record, values.data(), sizeof record);
  return record;
}

std::unique_ptr<Engine> OpenRecords(std::int32_t kind, const std::array<double, 11>& p,
                                    const std::array<double, 7>& diff, std::uint32_t adjustType,
                                    const std::array<double, 6>& a, const std::string& datumGrid,
                                    const std::string& geoid, double orthoHCorr) {
  Definition definition;
  definition.params = {p[0], p[1], kind, p[2], p[3], p[4], p[5], p[6], p[7], p[8], p[9], p[10]};
  definition.diff = RecordOf<EllDiff>(diff);
  definition.adjustment = {adjustType, a[0], a[1], a[2], a[3], a[4], a[5]};
  definition.datumGrid = datumGrid;
  definition.geoid = geoid;
  definition.orthoHCorr = orthoHCorr;
  return std::make_unique<Engine>(std::move(definition));
}

// Opens the text of a section. With a path, the object is compared with that of the library's own reading of the file.
std::unique_ptr<Engine> OpenText(const std::string& text, bool hasVerticalUnit, const std::string& path,
                                 const std::string& section) {
  Definition definition;
  definition.text = text;
  definition.hasVerticalUnit = hasVerticalUnit;
  auto engine = std::make_unique<Engine>(std::move(definition));
  if (!path.empty()) {
    const Engine::Lease lease(*engine, 1);
    if (!SameDefinition(lease.First().Api(), FromFile(path.c_str(), section.c_str()))) {
      throw py::value_error("the file changed while it was read");
    }
  }
  return engine;
}

// The warnings of a section of a configuration file: what the library probably does not read as intended.
std::vector<py::bytes> Warnings(const std::string& path, const std::string& data, const std::string& section) {
  std::vector<py::bytes> warnings;
  for (const std::string& text : cli::ConfigFile(path, data).Warnings(section)) {
    warnings.emplace_back(text);
  }
  return warnings;
}

// A part of a grid file.
py::bytes ReadGrid(Engine& engine, bool datum, std::int64_t offset, std::size_t size) {
  const Engine::Lease lease(engine, 1);
  const GridFile* file = datum ? lease.First().DatumFile() : lease.First().GeoidFile();
  std::string bytes(size, '\0');
  bytes.resize(file != nullptr ? file->ReadAt(offset, bytes.data(), size) : 0);
  return bytes;
}

void Translate(std::exception_ptr thrown) {
  try {
    std::rethrow_exception(std::move(thrown));
  } catch (const Failure& failure) {
    try {
      Raise(failure.code, failure.function, py::none(), py::none());
    } catch (py::error_already_set& raised) {
      raised.restore();
    }
  } catch (const std::system_error& error) {
    const py::tuple arguments = py::make_tuple(error.code().value(), error.what());
    PyErr_SetObject(PyExc_OSError, arguments.ptr());
  }
}

py::dict Kinds() {
  py::dict kinds;
  for (const KindName& kind : KindNames()) {
    kinds[py::str(kind.name)] = kind.number;
  }
  return kinds;
}

}  // namespace

}  // namespace latigo::python

PYBIND11_MODULE(_core, module) {  // NOLINT(modernize-use-trailing-return-type)
  using latigo::python::Engine;
  py::register_exception_translator(latigo::python::Translate);
  py::class_<Engine>(module, "Engine")
      .def("point", latigo::python::Point)
      .def("convert", latigo::python::Convert)
      .def("close", &Engine::Close)
      .def("closed", &Engine::Closed)
      .def("handles", &Engine::Handles)
      .def("facts", latigo::python::Facts)
      .def("name", latigo::python::NameOf)
      .def("read_grid", latigo::python::ReadGrid);
  module.def("open_text", latigo::python::OpenText);
  module.def("warnings", latigo::python::Warnings);
  module.def("open_records", latigo::python::OpenRecords);
  module.def("kinds", latigo::python::Kinds);
  module.def("version", latigo::api::GetGeodesyVersion);
  Py_AtExit(latigo::python::DestroyAllIdle);
}
