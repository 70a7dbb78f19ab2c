#include "handles.h"

#include <latigo/latigo.hpp>

#include <algorithm>

namespace latigo::postgresql {

namespace {

// A path of the library in the system's notation.
std::string Native(std::string path) {
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

std::array<FileStamp, 3> StampsOf(const std::array<std::string, 3>& paths) {
  std::array<FileStamp, 3> stamps;
  std::transform(paths.begin(), paths.end(), stamps.begin(),
                 [](const std::string& path) { return path.empty() ? FileStamp() : FileStamp(path); });
  return stamps;
}

// The object of a converter, for its questions.
class Borrowed {
 public:
  explicit Borrowed(GeodesyHandle handle) : object_(handle) {}
  ~Borrowed() { static_cast<void>(object_.Release()); }
  Borrowed(const Borrowed&) = delete;
  Borrowed& operator=(const Borrowed&) = delete;
  const api::Geodesy* operator->() const { return &object_; }

 private:
  api::Geodesy object_;
};

}  // namespace

// A file that changes while the handle is opened makes another attempt necessary: the handle could have the old
// definition, and the stamp of the new one. Where grid files are is known only when they are open, so a section with grid
// files is opened a second time, between two looks at them.
void Handles::Fill(Handle& handle, const Purpose& purpose, SectionFiles& files) {
  constexpr int Attempts = 10;
  std::array<std::string, 3> known;  // the paths, as of the attempt before
  std::unique_ptr<const cli::Converter> converter;
  for (int i = 0; i < Attempts; ++i) {
    files.Refresh();
    const std::string& file = files.FileOf(purpose.section);
    known[0] = file;
    const std::array<FileStamp, 3> before = StampsOf(known);
    cli::PointOptions options;
    options.file = file;
    options.section = purpose.section;
    cli::Between between;
    between.shift = purpose.shift;
    between.localGrid = purpose.localGrid;
    converter = std::make_unique<const cli::Converter>(options, between);
    const Borrowed object(converter->Handle());
    const std::string datum = *object->GetEllModel();
    const std::string geoid = object->GetGeoid()->fileName;
    const std::array<std::string, 3> paths = {file, Native(datum), Native(geoid)};
    if (paths == known && StampsOf(paths) == before) {
      handle.purpose = purpose;
      handle.converter = std::move(converter);
      handle.file = file;
      handle.paths = paths;
      handle.stamps = before;
      handle.warnings = files.Warnings(purpose.section, purpose.shift);
      handle.warned = !warnings_.insert(handle.warnings).second;
      // The object has its grid files open, and a converter that shifts the datum grid a second time.
      handle.openFiles = (datum.empty() ? 0 : purpose.shift ? 2 : 1) + (geoid.empty() ? 0 : 1);
      return;
    }
    known = paths;
  }
  throw cli::UsageError(known[0] + ": the file, or a grid file, changes all the time");
}

Handle& Handles::FreePlace() {
  Handle& place = *std::min_element(handles_.begin(), handles_.end(), [](const Handle& one, const Handle& other) {
    return (one.converter ? one.used : 0) < (other.converter ? other.used : 0);
  });
  place = Handle();
  return place;
}

int Handles::Open(const Purpose& purpose, SectionFiles& files, std::int64_t command) {
  auto* place = std::find_if(handles_.begin(), handles_.end(),
                             [&](const Handle& handle) { return handle.converter && handle.purpose == purpose; });
  if (place != handles_.end() && place->command != command) {
    // Another file may now have the section, or a file before it.
    files.Refresh();
    if (files.FileOf(purpose.section) != place->file || StampsOf(place->paths) != place->stamps) {
      *place = Handle();
    }
  }
  if (place == handles_.end() || !place->converter) {
    place = &FreePlace();
    Fill(*place, purpose, files);
    place->serial = ++serials_;
  }
  place->command = command;
  place->used = ++uses_;
  return static_cast<int>(place - handles_.begin());
}

int Handles::OpenFiles() const {
  int files = 0;
  for (const Handle& handle : handles_) {
    files += handle.openFiles;
  }
  return files;
}

}  // namespace latigo::postgresql
