// Grids for the rows of lookups: the same values in a grid file of the library and in a file for PROJ.
#pragma once

#include <string>

namespace bench {

// A folder of this run, removed when the program ends.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string File(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};
const TemporaryFolder& Folder();

// Five minutes of arc from 40 N 10 W to 52 N 15 E.
struct GridFile {
  std::string path;
  int depth;  // values per node

  static constexpr int rows = 145;
  static constexpr int columns = 301;
  static double South();  // radians
  static double West();
  static double Step();
};

// Undulations in metres; PROJ's is a GTX file.
GridFile WriteGeoidGrid();
std::string WriteGeoidGridForProj();

// Shifts of latitude and longitude in arc seconds; PROJ's is a CTable2 file.
GridFile WriteDatumGrid();
std::string WriteDatumGridForProj();

}  // namespace bench
