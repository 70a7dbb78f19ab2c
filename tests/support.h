// Shared by the tests: records of known systems, grid files, the log, and a temporary directory.
#pragma once

#include <gtest/gtest.h>
#include <latigo/latigo.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "grid_bytes.h"

#if defined(_WIN32)
#include <windows.h>
#endif

namespace support {

inline constexpr double Pi = 3.141592653589793;
inline constexpr double HalfPi = 1.5707963267948966;
inline constexpr double Second = Pi / 648000;
inline constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double Infinity = std::numeric_limits<double>::infinity();

constexpr double Rad(double degrees) { return degrees * Pi / 180; }

// SemiMajorAxis, InvFlattening, Kind, Unit; ScaleFactor; CentralMeridian, RefLatitude; NorthParallel, SouthParallel;
// SkewAzimuth; FalseEasting, FalseNorthing.
inline GeodesyParams WGS84(std::int32_t kind) { return {6378137.0, 298.257223563, kind, 1, 0, 0, 0, 0, 0, 0, 0, 0}; }
inline GeodesyParams Utm31() { return {6378137.0, 298.257223563, 3, 1, 0.9996, Rad(3), 0, 0, 0, 0, 500000, 0}; }
struct Destroy {
  void operator()(GeodesyObject* handle) const { DestroyGeodesy(handle); }
};
using Object = std::unique_ptr<GeodesyObject, Destroy>;

inline Object Make(const GeodesyParams& params) {
  Object object(CreateGeodesy(&params));
  EXPECT_TRUE(object) << "code " << GetGeodesyError();
  return object;
}

// The object of a section of claims/systems.ini, and the names of all sections.
inline Object Open(const std::string& system) {
  Object object(CreateFileGeodesy(LATIGO_CLAIMS "/systems.ini", system.c_str()));
  EXPECT_TRUE(object) << system << " gave code " << GetGeodesyError();
  return object;
}
inline std::vector<std::string> Systems() {
  std::ifstream file(LATIGO_CLAIMS "/systems.ini");
  std::vector<std::string> names;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with('[')) { names.push_back(line.substr(1, line.size() - 2)); }
  }
  return names;
}

#if defined(_WIN32)
inline constexpr const char* GermanLocale = "German_Germany.1252";

// An empty value removes the variable.
inline void SetEnvironment(const char* name, const std::string& value) { _putenv_s(name, value.c_str()); }

// Handlers of the process receive debug output before a debugger does; this one appends the library's lines to the
// tests' file. GoogleTest writes debug output too.
inline LONG CALLBACK KeepDebugOutput(EXCEPTION_POINTERS* event) {
  const EXCEPTION_RECORD& record = *event->ExceptionRecord;
  const char* path = std::getenv("LATIGO_DEBUG_OUTPUT");
  if (record.ExceptionCode != DBG_PRINTEXCEPTION_C || path == nullptr) { return EXCEPTION_CONTINUE_SEARCH; }
  const char* text = reinterpret_cast<const char*>(record.ExceptionInformation[1]);
  if (std::FILE* file = text[0] == '[' ? std::fopen(path, "ab") : nullptr) {  // no allocation by new
    std::fputs(text, file);
    std::fclose(file);
  }
  return EXCEPTION_CONTINUE_EXECUTION;
}
inline void* const DebugOutputHandler = AddVectoredExceptionHandler(1, KeepDebugOutput);
#else
inline constexpr const char* GermanLocale = "de_DE.UTF-8";

inline void SetEnvironment(const char* name, const std::string& value) {
  value.empty() ? unsetenv(name) : setenv(name, value.c_str(), 1);
}
#endif

// A new temporary directory.
inline std::string MakeDirectory() {
  std::random_device random;
  std::filesystem::path directory;
  do {
    directory = std::filesystem::temp_directory_path() / ("latigo-" + std::to_string(random()));
  } while (!std::filesystem::create_directory(directory));
  return directory.string();
}

// The install directory. The library finds it once and keeps it, so there is one for the whole program.
inline const std::string& InstallDirectory() {
  static const struct Made {
    std::string path = MakeDirectory();
    Made() {
      SetEnvironment("TWI_BATHYX", path);
      std::filesystem::create_directory(path + "/datum");
    }
    ~Made() { std::filesystem::remove_all(path); }
  } made;
  return made.path;
}

// The file of the log, one for the whole program.
inline const std::string& LogPath() {
  static const struct Made {
    std::string directory = MakeDirectory(), path = directory + "/log";
    ~Made() { std::filesystem::remove_all(directory); }
  } made;
  return made.path;
}
inline bool LogHasFile = true;
inline int LogQuestions = 0;

}  // namespace support

#if !defined(_WIN32)
// The library reads the variable when it is loaded, before any code of the program can set the environment. So the
// program replaces the function; a library that called getenv would find nothing.
extern "C" [[gnu::visibility("default"), gnu::used]] inline char* secure_getenv(const char* name) noexcept {
  if (std::strcmp(name, "LATIGO_DEBUG_OUTPUT") != 0) { return std::getenv(name); }
  ++support::LogQuestions;
  return support::LogHasFile ? const_cast<char*>(support::LogPath().c_str()) : nullptr;
}
#endif

namespace support {

// A directory removed with the test, and the lines that the library logs during the test.
class Scratch : public testing::Test {
 protected:
  Scratch() {
#if defined(_WIN32)
    SetEnvironment("LATIGO_DEBUG_OUTPUT", LogPath());
#endif
    std::filesystem::remove(LogPath());
  }
  ~Scratch() override {
    SetEnvironment("LATIGO_DEBUG_OUTPUT", "");
    std::filesystem::remove_all(directory_);
  }

  std::string Path(const std::string& name) const { return directory_ + "/" + name; }

  std::string Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(Path(name), std::ios::binary) << bytes;
    return Path(name);
  }

  // The log lines since the last call, without the thread id.
  std::vector<std::string> Log() const {
    std::ifstream file(LogPath());
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
      if (!line.empty()) { lines.push_back(line.substr(line.find("] ") + 2)); }
    }
    file.close();
    std::filesystem::remove(LogPath());
    return lines;
  }

 private:
  std::string directory_ = MakeDirectory();
};

using Lines = std::vector<std::string>;

}  // namespace support
