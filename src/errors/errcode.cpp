#include "errors/errcode.h"

#include <utility>

#include "errors/log_line.h"

namespace latigo {

namespace {

// Never destroyed: functions that a host runs at its exit, and threads that are still running, may call exports.
union Lasting {
  errfacility facility;
  Lasting() : facility() {}
  ~Lasting() {}  // NOLINT(modernize-use-equals-default): a default one would be deleted
};

// Before the static objects of a program that the library is linked into: their constructors may call exports.
[[gnu::init_priority(101)]] Lasting TheOne;

}  // namespace

constinit errfacility* DefaultFacility = &TheOne.facility;
constinit errfacility* GridFacility = &TheOne.facility;

errcode::errcode(errcode& source) noexcept
    : code_(source.code_),
      severity_(source.severity_),
      pending_(std::exchange(source.pending_, false) && !source.thrown_),
      facility_(source.facility_) {}

errcode& errcode::operator=(errcode& source) {
  if (pending_ && severity_ >= Warning) {
    Report();
  }
  code_ = source.code_;
  severity_ = source.severity_;
  facility_ = source.facility_;
  thrown_ = false;
  pending_ = std::exchange(source.pending_, false);
  return *this;
}

void errcode::Report() {
  facility_->report(*this);
}

void errfacility::report(errcode& value) {
  if (value.severity_ >= logLevel_) {
    log(value);
  }
  if (value.severity_ >= throwLevel_) {
    value.thrown_ = true;
    throw errcode(value);
  }
}

void errfacility::log(const errcode& value) {
  LogLine("Log --- %s %d\n", name_.c_str(), value.code_);
}

}  // namespace latigo
