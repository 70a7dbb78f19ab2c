// The open coordinate systems of a server process.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <set>
#include <string>

#include "converter.h"
#include "section_files.h"

namespace latigo::postgresql {

// What a handle is opened for.
struct Purpose {
  std::string section;
  bool shift = false;     // positions are WGS-84
  bool localGrid = true;  // the local grid of the section is applied
  bool operator==(const Purpose& other) const = default;
};

struct Handle {
  Purpose purpose;
  std::unique_ptr<const cli::Converter> converter;  // null if the place is free
  std::uint64_t serial = 0;                         // of this opening; no two have the same
  std::uint64_t used = 0;                           // the larger, the later
  std::int64_t command = 0;                         // in which the files were last looked at
  std::string file;
  std::array<std::string, 3> paths;  // of the configuration file, the datum grid and the geoid grid; empty for none
  std::array<FileStamp, 3> stamps;
  int openFiles = 0;
  std::string warnings;  // of the section, when it was opened
  bool warned = false;   // they were returned, of this handle or an earlier one
};

// At most `Places` handles: the one that was used longest ago is closed for another.
class Handles {
 public:
  static constexpr int Places = 32;

  // The place of an open handle whose files have not changed since it was opened, as seen in this command.
  int Open(const Purpose& purpose, SectionFiles& files, std::int64_t command);

  const Handle& At(int place) const { return handles_[static_cast<std::size_t>(place)]; }
  Handle& At(int place) { return handles_[static_cast<std::size_t>(place)]; }
  int OpenFiles() const;

 private:
  void Fill(Handle& handle, const Purpose& purpose, SectionFiles& files);
  Handle& FreePlace();

  std::array<Handle, Places> handles_;
  std::set<std::string> warnings_;  // of all that were opened
  // Of the process: a call site may remember a handle of an earlier object of this class.
  static inline std::uint64_t serials_ = 0;
  std::uint64_t uses_ = 0;
};

}  // namespace latigo::postgresql
