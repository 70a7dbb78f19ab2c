// `errcode`: the result of every inner operation, and the only exception type of the library. `errfacility`: the judge
// of a result that nobody looked at.
//
// An operation returns an errcode by value. Whoever reads `code()` silences it. A value that dies unread with a code
// other than 0 goes to its facility, which logs it from severity 3 and throws it from severity 4. So a caller that
// drops a result cannot lose a failure, and the destructor of an errcode may throw: never let a pending value die while
// an exception is in flight.
#pragma once

#include <cstdint>
#include <string>

namespace latigo {

// The numbers of the failures, from the one list of them.
enum ErrorNumber : std::int32_t {
#define LATIGO_ERROR(name, number, operation, text) name = (number),
#include "errors.def"
#undef LATIGO_ERROR
};

enum Severity : std::int16_t {
  Warning = 1,  // neither logged nor thrown
  Logged = 3,   // logged
  Fatal = 4,    // logged and thrown
};

class errfacility;

// Static objects that judge unread values. Both are the same facility.
extern errfacility* DefaultFacility;
extern errfacility* GridFacility;  // given by the grid file code

class errcode {
 public:
  // Success.
  errcode() noexcept : errcode(0, 0) {}
  // A null facility means DefaultFacility.
  errcode(std::int32_t code, std::int16_t severity, errfacility* facility = nullptr) noexcept
      : code_(code), severity_(severity), facility_(facility != nullptr ? facility : DefaultFacility) {}

  // A copy takes the duty over from its source, so the source changes. The copy of a value that is being thrown carries
  // no duty.
  errcode(errcode& source) noexcept;

  // A pending target of severity 1 or more is reported first, and that may throw.
  errcode& operator=(errcode& source);
  errcode& operator=(errcode&& source) { return *this = source; }

  // Reports a pending failure, and that may throw.
  ~errcode() noexcept(false) {
    if (code_ != 0 && pending_ && severity_ >= Warning) {
      Report();
    }
  }

  // Looks without reading: the value stays as loud as it is.
  bool Succeeded() const noexcept { return code_ == 0; }

  // Reads the code, and silences the value.
  std::int32_t code() noexcept {
    pending_ = false;
    return code_;
  }

 private:
  friend class errfacility;

  void Report();  // to the facility

  std::int32_t code_;
  std::int16_t severity_;
  bool thrown_ = false;    // the facility is about to throw the value
  bool pending_ = true;    // neither read nor handed on
  errfacility* facility_;  // never null
};

class errfacility {
 public:
  // A null name means "Error".
  explicit errfacility(const char* name = nullptr) : name_(name != nullptr ? name : "Error") {}
  virtual ~errfacility() = default;

  // Logs and throws, as the value's severity asks for.
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

// Makes a fatal failure that nobody reads, so that its facility logs and throws it here.
inline void ReportUnread(ErrorNumber code, errfacility* facility = nullptr) {
  errcode(code, Fatal, facility);
}

}  // namespace latigo
