// The profile file functions of src/platform/posix compared with those of Windows, on unusual files. docs/windows.md
// lists the intended differences, which this test omits.
#include "platform/platform.h"
#include "platform/posix/profile_file.h"
#include "support.h"

namespace latigo {
namespace {

class ProfileComparisonTest : public support::Scratch {};

// The result of a function and its text in a buffer of a size, up to the final NUL; and the result with a large buffer.
template <typename Function>
std::pair<std::string, std::uint32_t> Given(std::uint32_t size, Function function) {
  std::string buffer(2000, '#');
  const std::uint32_t whole = function(buffer.data(), 2000);
  buffer.assign(2000, '#');
  const std::uint32_t count = function(buffer.data(), size);
  return {std::to_string(count) + " " + buffer.substr(0, size == 0 ? 1 : count + 1), whole};
}

// A key without a name, or a section's name with surrounding blanks.
bool IsKeptDifference(std::string_view bytes, const ProfileLine& line) {
  const std::string_view whole = bytes.substr(line.begin, line.end - line.begin);
  return line.is == ProfileLine::Is::Section ? whole.find("[" + std::string(line.name) + "]") == std::string::npos
                                             : line.is == ProfileLine::Is::Key && line.name.empty();
}

TEST_F(ProfileComparisonTest, UnusualFilesHaveTheSameTextsAndCounts) {
  const std::string longValue = "\nk=\"" + std::string(900, 'x');
  const std::string parts[] = {
      "\n",   "\n",  "\r\n", "\r",   "[", "]", "=", " ",  "\t",   "\"",   "'",    ";",          "S",      "[S]\n",
      "[]\n", "[T]", "\nk=", "\nj=", "k", "K", "v", "\v", "\x1A", "\xE9", "\xA0", "\nk='ab'\n", longValue};
  std::mt19937 random(1);
  int compared = 0;
  for (int i = 0; i < 500; ++i) {
    std::string bytes;
    for (std::size_t n = random() % 30; n > 0; --n) { bytes += parts[random() % std::size(parts)]; }
    bool kept = false;
    ProfileLines lines(bytes);
    for (ProfileLine line; lines.Next(line);) { kept = kept || IsKeptDifference(bytes, line); }
    if (kept) { continue; }
    ++compared;
    const std::string file =
        Write("file" + std::to_string(i) + ".ini", bytes);  // a file of the same name would be cached
    for (const std::uint32_t size : {2000, 900, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9}) {
      const auto compare = [&](bool list, auto ours, auto real) {
        const auto [expected, whole] = Given(size, real);
        if (size == whole + 1 && (list || bytes.find_first_of("'\"") != std::string::npos)) { return; }  // it just fits
        EXPECT_EQ(Given(size, ours).first, expected) << testing::PrintToString(bytes) << " size " << size;
      };
      using Size = std::uint32_t;
      compare(
          true, [&](char* b, Size n) { return ListSections(bytes, b, n); },
          [&](char* b, Size n) { return GetPrivateProfileSectionNamesA(b, n, file.c_str()); });
      for (const char* section : {"S", "", " t "}) {
        compare(
            true, [&](char* b, Size n) { return ListKeys(bytes, section, b, n); },
            [&](char* b, Size n) { return GetPrivateProfileStringA(section, nullptr, "", b, n, file.c_str()); });
        for (const char* key : {"k", "J ", "v"}) {
          compare(
              false, [&](char* b, Size n) { return CopyText(ProfileValue(bytes, section, key).value_or("-"), b, n); },
              [&](char* b, Size n) { return GetPrivateProfileStringA(section, key, "-", b, n, file.c_str()); });
        }
      }
      if (HasFailure()) { return; }
    }
  }
  EXPECT_GT(compared, 300);
}

}  // namespace
}  // namespace latigo
