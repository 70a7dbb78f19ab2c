// Standard output to a file, which replaces an older one only when it is complete.
#pragma once

#include <string>
#include <vector>

namespace latigo::cli {

// Throws UsageError if standard output is one of the files, as with >>: it would be read as long as it grows.
void RequireOtherOutput(const std::vector<std::string>& inputs);

class OutputFile {
 public:
  // Standard output goes to a new file in the folder of `path`. A signal that ends the program removes it. A path that
  // is no regular file, such as a pipe or a device, is written directly. Throws UsageError if a file cannot be made or
  // the path is one of the inputs: what is read would be lost.
  OutputFile(const std::string& path, const std::vector<std::string>& inputs);

  // Without Commit, removes the new file; the older one is as it was.
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // Renames the new file to `path`, with the mode of the older one. Throws UsageError if data cannot be written.
  void Commit();

 private:
  static void Redirect(int to);

  std::string name_;  // as given, for messages
  int standardOutput_ = -1;
  bool committed_ = false;
};

}  // namespace latigo::cli
