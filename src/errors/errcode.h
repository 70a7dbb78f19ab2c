// `errcode`: the result of every internal operation, and the only exception type of the library. `errfacility`: reports
// results that were not read.
//
// An operation returns an errcode by value. Reading `code()` marks it as handled. If an errcode other than 0 is
// destroyed unread, its facility logs it (severity 3 and above) and throws it (severity 4 and above). So a caller
// cannot lose a failure by ignoring a result, and the destructor of an errcode may throw: never let a pending value be
// destroyed while an exception propagates.
#pragma once

#include <cstdint>
#include <string>

namespace latigo {

// The failure codes, from resources/errors.def.
enum ErrorNumber : std::int32_t {
#define LATIGO_ERROR(name, NAME, number, functions, text) name = (number),
#include "errors.def"
#undef LATIGO_ERROR
};

enum Severity : std::int16_t {
  Warning = 1,  // neither logged nor thrown
  Logged = 3,   // logged
  Fatal = 4,    // logged and thrown
};

class errfacility;

// The facilities that report unread values. Both are the same static object.
extern errfacility* DefaultFacility;
extern errfacility* GridFacility;  // of grid files

class errcode {
 public:
  // Success.
  errcode() noexcept : errcode(0, 0) {}
  // A null facility means DefaultFacility.
  errcode(std::int32_t code, std::int16_t severity, errfacility* facility = nullptr) noexcept
      : code_(code), severity_(severity), facility_(facility != nullptr ? facility : DefaultFacility) {}

  // Copying transfers the obligation to report, so it changes the source, which then counts as handled. The copy of a
  // value that is being thrown has no obligation.
  errcode(errcode& source) noexcept;

  // Reports a pending target of severity 1 or more first, which may throw.
  errcode& operator=(errcode& source);
  errcode& operator=(errcode&& source) { return *this = source; }

  // Reports a pending failure, which may throw.
  ~errcode() noexcept(false) {
    if (code_ != 0 && pending_ && severity_ >= Warning) {
      Report();
    }
  }

  // Tests without reading: a pending failure stays pending.
  bool Succeeded() const noexcept { return code_ == 0; }

  // Reads the code and marks it as handled.
  std::int32_t code() noexcept {
    pending_ = false;
    return code_;
  }

 private:
  friend class errfacility;

  void Report();  // to the facility

  std::int32_t code_;
  std::int16_t severity_;
  bool thrown_ = false;    // the facility is throwing the value
  bool pending_ = true;    // neither read nor copied
  errfacility* facility_;  // never null
};

class errfacility {
 public:
  // A null name means "Error".
  explicit errfacility(const char* name = nullptr) : name_(name != nullptr ? name : "Error") {}
  virtual ~errfacility() = default;

  // Logs and throws according to the value's severity.
  virtual void report(errcode& value);

  // Writes the log line; the value stays pending.
  virtual void log(const errcode& value);

  errfacility(const errfacility&) = delete;
  errfacility& operator=(const errfacility&) = delete;

 private:
  std::int16_t logLevel_ = Logged;
  std::int16_t throwLevel_ = Fatal;
  std::string name_;
};

// Creates a fatal failure and leaves it unread, so that its facility logs it and throws it here.
inline void ReportUnread(ErrorNumber code, errfacility* facility = nullptr) {
  errcode(code, Fatal, facility);
}

}  // namespace latigo
