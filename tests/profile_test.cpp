// Profile files, and the numbers in them.
#include "frame/profile.h"

#include <algorithm>
#include <clocale>

#include "frame/c_numbers.h"
#include "platform/platform.h"
#include "support.h"

namespace latigo {
namespace {

class ProfileTest : public support::Scratch {
 protected:
  // The value of a key in a file of these bytes, or "-" if it has none.
  std::string Value(const std::string& bytes, const char* section, const char* key) const {
    const Profile profile(Write("file.ini", bytes).c_str());
    char value[256];
    const std::int32_t length = profile.GetString(value, sizeof value, key, section, "-");
    EXPECT_EQ(static_cast<std::size_t>(length), std::strlen(value));
    return value;
  }
  std::string Bytes(const std::string& name = "file.ini") const {
    std::ifstream file(Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
};

// A list of names as the services give it, with '|' for NUL.
std::string Shown(const char* list, std::size_t size) {
  std::string text(list, size);
  std::replace(text.begin(), text.end(), '\0', '|');
  return text;
}

TEST_F(ProfileTest, ValuesAreFoundInFilesAsPeopleWriteThem) {
  struct Case {
    const char* bytes;
    const char* value;
  };
  for (const auto& [bytes, value] : {
           Case{"[S]\nk=v\n", "v"},
           Case{"[S]\nk=v", "v"},
           Case{"[S]\r\nk=v\r\n", "v"},
           Case{"\xEF\xBB\xBF[S]\nk=v\n", "v"},
           Case{"  [ s ]  \n\t K \t=  v w  \n", "v w"},
           Case{"[S]\nk=\"  v \"\n", "  v "},
           Case{"[S]\nk='v\"\n", "'v\""},
           Case{"[S]\nk=\"\n", "\""},
           Case{"[S]\nk=a=b\n", "a=b"},
           Case{"[S]\nk=\n", ""},
           Case{"[S]\n;k=no\n  ; k=no\nk=v ; stays\n", "v ; stays"},
           Case{"[S]\nk=first\nK=second\n", "first"},
           Case{"[S]\nj=1\n[T]\nk=t\n[S]\nk=late\n", "-"},
           Case{"[T]\nk=t\n[S]\nk=v\n", "v"},
           Case{"k=v\n[T]\n", "-"},
           Case{"[S\nk=v\n", "v"},
           Case{"[S]\nk\n=v\n", "-"},
           Case{"", "-"},
       }) {
    EXPECT_EQ(Value(bytes, "S", "k"), value) << bytes;
  }
}

TEST_F(ProfileTest, WhatIsNoRegularFileHasNoValues) {
  std::filesystem::create_directory(Path("folder"));
  for (const std::string& name : {Path("nothing"), Path("folder"), std::string("/dev/zero")}) {
    const Profile profile(name.c_str());
    EXPECT_FALSE(profile.HasKey("k", "S"));
    EXPECT_FALSE(profile.HasSection("S"));
    char list[4] = "xyz";
    EXPECT_EQ(profile.ListKeys(list, sizeof list, "S"), 0);
    EXPECT_EQ(Shown(list, 2), "||");
    EXPECT_EQ(profile.ListSections(list, sizeof list), 0);
  }
  Write("huge.ini", "[S]\nk=v\n");
  std::filesystem::resize_file(Path("huge.ini"), 20 << 20);
  EXPECT_FALSE(Profile(Path("huge.ini").c_str()).HasKey("k", "S"));
}

TEST_F(ProfileTest, TextsAndListsAreCutToAnyBuffer) {
  const Profile profile(Write("file.ini", "[One]\nab=xyz\ncde=\n[Two]\n[]\n").c_str());
  char buffer[40];
  EXPECT_EQ(profile.ListKeys(buffer, sizeof buffer, "one"), 2);
  EXPECT_EQ(Shown(buffer, 8), "ab|cde||");
  EXPECT_EQ(profile.ListSections(buffer, sizeof buffer), 8);
  EXPECT_EQ(Shown(buffer, 9), "One|Two||");
  EXPECT_TRUE(profile.HasSection("One"));
  EXPECT_FALSE(profile.HasSection("Two")) << "a section without keys counts as absent";
  for (std::int32_t size = 0; size <= 9; ++size) {
    std::fill(std::begin(buffer), std::end(buffer), '#');
    const std::int32_t length = profile.GetString(buffer, size, nullptr, "One", "");
    EXPECT_EQ(length, size >= 8 ? 7 : std::max(size - 2, 0));
    EXPECT_EQ(Shown(buffer + size, 3), "###");
    if (size > 0) {
      EXPECT_EQ(buffer[length], 0);
    }
    std::fill(std::begin(buffer), std::end(buffer), '#');
    EXPECT_EQ(profile.GetString(buffer, size, "ab", "One", ""), std::clamp(size - 1, 0, 3));
    EXPECT_EQ(buffer[size], '#');
  }
}

TEST_F(ProfileTest, WritingKeepsTheOtherLines) {
  struct Case {
    const char* before;
    const char* key;
    const char* value;
    const char* after;
  };
  for (const auto& [before, key, value, after] : {
           Case{"", "k", "v", "[S]\nk=v\n"},
           Case{"; c\n[T]\na=1", "k", "v", "; c\n[T]\na=1\n[S]\nk=v\n"},
           Case{"[s]\n; c\nk = old\nj=2\n", "K", "v", "[s]\n; c\nK=v\nj=2\n"},
           Case{"[S]\r\na=1\r\n\r\n[T]\r\n", "k", "v", "[S]\r\na=1\r\nk=v\r\n\r\n[T]\r\n"},
           Case{"[S]\na=1", "k", "v", "[S]\na=1\nk=v\n"},
           Case{"[S]\nk=1\nj=2\n", "k", nullptr, "[S]\nj=2\n"},
           Case{"[S]\nj=2\n", "k", nullptr, "[S]\nj=2\n"},
           Case{"[R]\n[S]\nk=1\n; c\n[T]\nk=2\n", nullptr, nullptr, "[R]\n[T]\nk=2\n"},
       }) {
    Profile profile(Write("file.ini", before).c_str());
    EXPECT_TRUE(profile.WriteString(key, value, "S"));
    EXPECT_EQ(Bytes(), after);
  }
  Profile profile(Path("file.ini").c_str());
  EXPECT_FALSE(profile.WriteString("k", "two\nlines", "S"));
  EXPECT_FALSE(Profile(Path("no/folder.ini").c_str()).WriteString("k", "v", "S"));
  std::size_t files = 0;
  for ([[maybe_unused]] const auto& file : std::filesystem::directory_iterator(Path(""))) {
    ++files;
  }
  EXPECT_EQ(files, 1u) << "nothing stays beside the file";
}

TEST_F(ProfileTest, SectionsAreCopiedInPlaceOfTheOldOnes) {
  const Profile source(Write("source.ini", "[S]\na=1\nb=" + std::string(300, 'x') + "\n").c_str());
  Profile target(Write("file.ini", "[T]\nold=1\n[U]\n").c_str());
  target.CopySection(source, "S", "T");
  target.CopySection(source, "S", nullptr);
  EXPECT_EQ(Bytes(), "[U]\n[T]\na=1\nb=" + std::string(255, 'x') + "\n[S]\na=1\nb=" + std::string(255, 'x') + "\n");
  target.CopySection(source, "Nothing", "T");
  EXPECT_FALSE(target.HasSection("T"));
}

TEST_F(ProfileTest, FilesGoWithTheirProfileIfAsked) {
  { const Profile stays(Write("file.ini", "x").c_str()); }
  EXPECT_TRUE(std::filesystem::exists(Path("file.ini")));
  {
    Profile goes((Path("") + "\\file.ini").c_str());
    goes.DeleteOnClose = true;
  }
  EXPECT_FALSE(std::filesystem::exists(Path("file.ini")));
}

TEST_F(ProfileTest, NumbersAndBooleansCountTheFirst79Characters) {
  const std::string blanks(78, '0');
  const Profile profile(Write("file.ini", "[S]\nlong=" + blanks +
                                              "123\non=ON\nyes=yEs\none= 1 \nx=1x\ntwo=2\nno=off\n"
                                              "empty=\n")
                            .c_str());
  EXPECT_EQ(profile.GetInt("long", "S", 5), 1);
  EXPECT_EQ(profile.GetInt("empty", "S", 5), 5);
  EXPECT_EQ(profile.GetDouble("absent", "S", 2.5), 2.5);
  for (const char* yes : {"on", "yes", "one", "x"}) {
    EXPECT_TRUE(profile.GetBool(yes, "S", false)) << yes;
  }
  for (const char* no : {"two", "no"}) {
    EXPECT_FALSE(profile.GetBool(no, "S", true)) << no;
  }
  EXPECT_TRUE(profile.GetBool("empty", "S", true));
}

// atof and atoi of the C library, in the C locale, say what is right.
TEST(CNumbersTest, NumbersAreReadAsInTheCLocaleWhateverTheHostHasSet) {
  const char* const texts[] = {"0",      "1.5",        "-2.25e2",    "+3",         " \t 4",  "1,5",
                               "1.5abc", "abc",        "",           "-",          "+-5",    "--5",
                               "-x",     "-0x",        ".5",         "5.",         ".",      "1e",
                               "1e+",    "1e5",        "1e400",      "-1e400",     "1e-400", "inf",
                               "-INF",   "infinity",   "0x1p4",      "0X.8",       "0x",     "123456789012345678901",
                               "-0",     "4294967296", "2147483647", "-2147483648"};
  for (const char* text : texts) {
    const double expected = std::atof(text);
    ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr) << "scripts/install-deps makes this locale";
    const double found = CDouble(text);
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(std::memcmp(&found, &expected, sizeof found), 0) << text << " gave " << found << ", not " << expected;
  }
  EXPECT_TRUE(std::isnan(CDouble("nan")));
  for (const char* text : {"0", "12", " -7x", "+5", "+-5", "", "x", "1.9", "2147483647", "-2147483648"}) {
    EXPECT_EQ(CInt(text), std::atoi(text)) << text;
  }
  EXPECT_EQ(CInt("99999999999"), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(CInt("-99999999999999999999"), std::numeric_limits<std::int32_t>::min());
}

}  // namespace
}  // namespace latigo
