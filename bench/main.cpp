// latigo-bench [--library PATH] [--against PATH] and Google Benchmark's options. --library selects the build to measure
// instead of the one built with this program; --against compares it with another build instead of floors and peers. The
// exit status is 1 if the contestants of any row disagree.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <exception>

#include "library.h"
#include "rows.h"

namespace {

// Removes an option and its value from the arguments; returns the value, or the default.
std::string Take(int& argc, char** argv, const char* option, const char* otherwise) {
  for (int i = 1; i + 1 < argc; ++i) {
    if (std::strcmp(argv[i], option) == 0) {
      const std::string value = argv[i + 1];
      for (int k = i; k + 2 <= argc; ++k) {
        argv[k] = argv[k + 2];
      }
      argc -= 2;
      return value;
    }
  }
  return otherwise;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const std::string path = Take(argc, argv, "--library", LATIGO_LIBRARY);
    const std::string other = Take(argc, argv, "--against", "");
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
      return 2;
    }
    bench::Run run;
    run.libraries.emplace_back("latigo", path);
    if (!other.empty()) {
      run.libraries.emplace_back("other", other);
    }
    bench::AddProjectionRows(run);
    bench::AddDatumRows(run);
    bench::AddLineRows(run);
    bench::AddGridRows(run);
    bench::AddObjectRows(run);
    bench::AddThreadRows(run);
    benchmark::RunSpecifiedBenchmarks();
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "latigo-bench: %s\n", failure.what());
    return 2;
  }
  return bench::AllAgreed() ? 0 : 1;
}
