#include "handle.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

namespace latigo::python {

namespace {

void Require(const api::Status& status) {
  if (!status) {
    throw Failure{status.code, status.function};
  }
}

const char* OrNull(const std::string& path) {
  return path.empty() ? nullptr : path.c_str();
}

// A file in memory with a text, which the library opens by its name.
class MemoryFile {
 public:
  explicit MemoryFile(const std::string& text) : file_(memfd_create("latigo", MFD_CLOEXEC)) {
    if (file_ < 0 || write(file_, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
      const int reason = errno;
      close(file_);
      throw std::system_error(reason, std::generic_category(), "a file in memory");
    }
    path_ = "/proc/self/fd/" + std::to_string(file_);
  }
  ~MemoryFile() { close(file_); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  const char* Path() const { return path_.c_str(); }

 private:
  int file_;
  std::string path_;
};

api::Geodesy FromRecords(const Definition& definition) {
  api::Result<api::Geodesy> made = api::Geodesy::CreateGeodesy(definition.params);
  if (!made) {
    throw Failure{made.code, made.function};
  }
  api::Geodesy object = std::move(made.value);
  Require(definition.datumGrid.empty() ? object.SetEllDiff(definition.diff)
                                       : object.SetEllModel(definition.datumGrid.c_str()));
  Require(object.SetAdjustment(definition.adjustment));
  Require(object.SetGeoid(OrNull(definition.geoid), definition.orthoHCorr));
  return object;
}

api::Geodesy Make(const Definition& definition) {
  return definition.text.empty() ? FromRecords(definition) : FromFile(MemoryFile(definition.text).Path(), nullptr);
}

bool HasLocalGrid(const api::Geodesy& object) {
  return (object.GetAdjustment()->AdjustType & LATIGO_ADJUST_TYPE) != 0;
}

// The projection alone, which needs no files.
api::Geodesy ProjectionOf(const Definition& definition) {
  api::Geodesy projection = Make(definition);
  const Adjustment none = {LATIGO_ADJUST_NONE, 0, 0, 0, 1, 0, 0};
  Require(projection.SetAdjustment(none));
  Require(projection.SetEllModel(nullptr));
  Require(projection.SetGeoid(nullptr));
  return projection;
}

std::unique_ptr<GridFile> FileAt(const std::string& path) {
  return path.empty() ? nullptr : std::make_unique<GridFile>(path);
}

template <typename Record>
bool SameBytes(const Record& a, const Record& b) {
  // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison,cert-exp42-c,cert-flp37-c): the bits are what is compared
  return std::memcmp(&a, &b, sizeof a) == 0;
}

}  // namespace

api::Geodesy FromFile(const char* path, const char* section) {
  api::Result<api::Geodesy> made = api::Geodesy::CreateFileGeodesy(path, section);
  if (!made) {
    throw Failure{made.code, made.function};
  }
  return std::move(made.value);
}

Handle::Handle(const Definition& definition)
    : object_(Make(definition)),
      projection_(HasLocalGrid(object_) ? ProjectionOf(definition) : api::Geodesy()),
      roundTrip_(object_.Handle()),
      projectionRoundTrip_(WithoutLocalGrid()),
      datumFile_(
          FileAt(object_.GetEllModel().value)),  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): a false alarm
      geoidFile_(FileAt(object_.GetGeoid()->fileName)),  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)
      hasGeoid_(geoidFile_ || object_.GetGeoid()->orthoHCorr != 0),
      hasVerticalUnit_(definition.hasVerticalUnit) {
  if (datumFile_) {
    area_.emplace(*datumFile_);
  }
}

bool SameDefinition(const api::Geodesy& a, const api::Geodesy& b) {
  return SameBytes(a.GetGeodesyParams().value, b.GetGeodesyParams().value) &&
         SameBytes(a.GetEllDiff().value, b.GetEllDiff().value) &&
         SameBytes(a.GetAdjustment().value, b.GetAdjustment().value) &&
         SameBytes(a.VerticalMetres(1).value, b.VerticalMetres(1).value) &&
         SameBytes(a.GetGeoid()->orthoHCorr, b.GetGeoid()->orthoHCorr) &&
         a.GetGeoid()->fileName == b.GetGeoid()->fileName && a.GetEllModel().value == b.GetEllModel().value;
}

}  // namespace latigo::python
