// Updates docs/projections.md from the library: the closure table between the page's markers, and a picture for each
// kind.   projection-page [--check] DOCS
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string_view>

#include "closure.h"
#include "picture.h"
#include "systems.h"

namespace {

namespace page = latigo::page;
using Files = std::map<std::filesystem::path, std::string>;

constexpr std::string_view Begin = "<!-- closure table: scripts/projection-page -->\n";
constexpr std::string_view End = "<!-- end of closure table -->\n";

std::string Read(const std::filesystem::path& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

std::string WithTable(const std::string& text) {
  const std::size_t begin = text.find(Begin);
  const std::size_t end = text.find(End);
  if (begin == std::string::npos || end == std::string::npos) {
    throw std::runtime_error("the page has no markers for the table");
  }
  return text.substr(0, begin) + std::string(Begin) + page::ClosureTable() + text.substr(end);
}

Files Make(const std::filesystem::path& docs) {
  Files files;
  files[docs / "projections.md"] = WithTable(Read(docs / "projections.md"));
  for (const page::System& system : page::Systems) {
    const page::Grid grid(system);
    std::string name = grid.Code() + ".svg";
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::tolower(c); });
    files[docs / "projections" / name] = page::Picture(system, grid);
  }
  return files;
}

// Reports the first line of a file that is out of date.
bool Check(const std::filesystem::path& path, const std::string& made) {
  const std::string found = Read(path);
  if (found == made) {
    return true;
  }
  const auto differs = std::mismatch(made.begin(), made.end(), found.begin(), found.end()).first;
  std::printf("%s:%d: out of date; run scripts/projection-page\n", path.string().c_str(),
              static_cast<int>(std::count(made.begin(), differs, '\n')) + 1);
  return false;
}

int Run(int argc, char** argv) {
  const bool check = argc == 3 && std::string_view(argv[1]) == "--check";
  if (argc != 2 && !check) {
    throw std::runtime_error("projection-page [--check] DOCS");
  }
  bool same = true;
  for (const auto& [path, text] : Make(argv[argc - 1])) {
    if (check) {
      same = Check(path, text) && same;
    } else {
      std::filesystem::create_directories(path.parent_path());
      std::ofstream(path, std::ios::binary) << text;
    }
  }
  return same ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "projection-page: %s\n", failure.what());
    return 2;
  }
}
