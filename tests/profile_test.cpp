// Profile files and their numbers.
#include "frame/profile.h"

#include <algorithm>
#include <clocale>
#include <csignal>

#include "platform/c_numbers.h"
#include "support.h"

#if !defined(_WIN32)
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace latigo {
namespace {

class ProfileTest : public support::Scratch {
 protected:
  Profile File(const std::string& bytes) const { return Profile(Write("file.ini", bytes).c_str()); }
  std::string Bytes() const {
    std::ifstream file(Path("file.ini"));
    return {std::istreambuf_iterator<char>(file), {}};
  }
};

TEST_F(ProfileTest, ValuesAreFoundWithBlanksQuotesCommentsAndAnyCase) {
  // clang-format off
  for (const auto& [bytes, expected] :
       {std::pair{"[S]\nk=v\n", "v"}, {"[S]\nk=v", "v"}, {"[S]\r\nk=v\r\n", "v"}, {"\xEF\xBB\xBF[S]\nk=v\n", "v"},
        {"  [s]  \n\t K \t=  v w  \n", "v w"}, {"[S]\nk=\"  v \"\n", "  v "}, {"[S]\nk='v\"\n", "'v\""},
        {"[S]\nk=\"\"\n", ""}, {"[S]\nk=\"\n", "\""}, {"[S]\nk=a=b\n", "a=b"}, {"[S]\nk=\n", ""},
        {"[S]\n;k=no\n ;k=no\nk=v ; w\n", "v ; w"}, {"[S]\nk=first\nK=second\n", "first"},
        {"[S]\nj=1\n[T]\nk=t\n[S]\nk=late\n", "-"}, {"[T]\nk=t\n[S]\nk=v\n", "v"}, {"k=v\n[T]\n", "-"},
        {"[S\nk=v\n", "-"}, {"[S]\rk=v\rj=w", "v"}, {"[S]\nk\nk=v\n", "-"}, {"[S]\nk\n=v\n", "-"}, {"", "-"}}) {
    // clang-format on
    char value[256];
    EXPECT_EQ(File(bytes).GetString(value, sizeof value, "k", "S", "-"), std::ssize(std::string(expected))) << bytes;
    EXPECT_STREQ(value, expected) << bytes;
  }
}

#if !defined(_WIN32)  // where these are the system's own
// A list of names as written by the services, with '|' for NUL.
std::string Shown(const char* list, std::size_t size) {
  std::string text(list, size);
  std::replace(text.begin(), text.end(), '\0', '|');
  return text;
}

TEST_F(ProfileTest, IrregularAndOversizedFilesHaveNoValues) {
  std::filesystem::create_directory(Path("folder"));
  std::filesystem::resize_file(Write("huge.ini", "[S]\nk=v\n"), 20 << 20);
  for (const std::string& name : {Path("nothing"), Path("folder"), std::string("/dev/zero"), Path("huge.ini")}) {
    const Profile profile(name.c_str());
    char list[4] = "xyz";
    EXPECT_FALSE(profile.HasKey("k", "S") || profile.HasSection("S"));
    EXPECT_EQ(profile.ListKeys(list, sizeof list, "S"), 0);
    EXPECT_EQ(Shown(list, 2), "||");
    EXPECT_EQ(profile.ListSections(list, sizeof list), 0);
  }
  const std::string megabytes(15 << 20, 'x');
  EXPECT_TRUE(File("[S]\nlong=" + megabytes + "\nk=v\n").HasKey("k", "S"));
}

TEST_F(ProfileTest, TextsAndListsAreCutToTheBuffer) {
  const Profile profile(Write("file.ini", "[One]\n;c=1\nab=xyz\ncde=\n[Two]\n[]\n").c_str());
  char buffer[40];
  EXPECT_EQ(profile.ListKeys(buffer, sizeof buffer, "one"), 2);
  EXPECT_EQ(Shown(buffer, 8), "ab|cde||");
  EXPECT_EQ(profile.ListSections(buffer, sizeof buffer), 8);
  EXPECT_EQ(Shown(buffer, 9), "One|Two||");
  EXPECT_TRUE(profile.HasSection("One") && !profile.HasSection("Two")) << "a section without keys counts as absent";
  const char* const lists[] = {"", "|", "||", "a||", "ab||", "ab|||", "ab|c||", "ab|cd||", "ab|cde||"};
  for (std::int32_t size = 0; size <= 8; ++size) {
    std::fill(std::begin(buffer), std::end(buffer), '#');
    EXPECT_EQ(profile.GetString(buffer, size, nullptr, "One", ""), size == 8 ? 7 : std::max(size - 2, 0));
    EXPECT_TRUE(Shown(buffer, 40).starts_with(std::string(lists[size]).substr(0, static_cast<std::size_t>(size))));
    EXPECT_EQ(buffer[size], '#');
    EXPECT_EQ(profile.GetString(buffer, size, "ab", "One", ""), std::clamp(size - 1, 0, 3));
    EXPECT_EQ(buffer[size], '#');
  }
}

TEST_F(ProfileTest, UnreadableAndWriteProtectedFilesAreNotReplaced) {
  const bool root = geteuid() == 0;
  std::filesystem::permissions(Path(""), std::filesystem::perms(0777));
  const std::string file = Write("file.ini", "[S]\nk=1\n");
  ASSERT_TRUE(!root || chown(file.c_str(), 4711, 4712) == 0);
  EXPECT_TRUE(Profile(file.c_str()).WriteString("k", "2", "S"));
  struct stat status {};
  stat(file.c_str(), &status);
  EXPECT_TRUE(!root || (status.st_uid == 4711 && status.st_gid == 4712)) << "the owner stays";
  ASSERT_TRUE(!root || seteuid(65534) == 0);
  for (const auto& [mode, writes] : {std::pair{0222, false}, {0444, false}, {0666, true}}) {
    const std::string own = Write("own" + std::to_string(mode), "[S]\nk=1\n");
    chmod(own.c_str(), static_cast<mode_t>(mode));
    EXPECT_EQ(Profile(own.c_str()).WriteString("k", "2", "S"), writes) << mode;
    EXPECT_EQ(std::filesystem::file_size(own), 8);
  }
  // A file of another owner, with the caller's or another group, becomes the caller's; nobody gets more access.
  for (const auto& [group, mode, kept] : {std::tuple{0, 06660, 0660}, {4712, 06676, 0666}}) {
    if (!root) { break; }
    EXPECT_EQ(seteuid(0) + chown(file.c_str(), 4711, static_cast<gid_t>(group)), 0);
    EXPECT_EQ(chmod(file.c_str(), static_cast<mode_t>(mode)) + seteuid(65534), 0);
    EXPECT_TRUE(Profile(file.c_str()).WriteString("k", std::to_string(group).c_str(), "S"));
    stat(file.c_str(), &status);
    EXPECT_EQ(status.st_mode & 07777, kept);
  }
  EXPECT_TRUE(!root || seteuid(0) == 0);

  std::filesystem::create_symlink(Path("nothing"), Path("link"));
  EXPECT_FALSE(Profile(Path("link").c_str()).WriteString("k", "v", "S"));
  std::filesystem::resize_file(file, 16 << 20);
  EXPECT_FALSE(Profile(file.c_str()).WriteString("new", "v", "S")) << "it would be too large to be read";
  std::filesystem::resize_file(file, 20 << 20);
  EXPECT_FALSE(Profile(file.c_str()).WriteString("k", "v", "S"));
  EXPECT_EQ(std::filesystem::file_size(file), 20 << 20);
}

TEST_F(ProfileTest, WritingKeepsTheOtherLines) {
  // clang-format off
  for (const auto& [before, key, value, after] :
       {std::tuple{"", "k", "v", "[S]\nk=v\n"}, {"; c\n[T]\na=1", "k", "v", "; c\n[T]\na=1\n[S]\nk=v\n"},
        {"[ s ]\n; c\nk = old\nj=2\n", "K", "v", "[ s ]\n; c\nK=v\nj=2\n"}, {"[S]\ra=1\rk\rj=2", "k", "v", "[S]\ra=1\rk=v\nj=2"},
        {"[S]\na=1", "k", "v", "[S]\na=1\nk=v\n"}, {"\r\n[S]\r\n", "k", "v", "\r\n[S]\r\nk=v\r\n"},
        {"[S]\nk=1\n", " k ", "v", "[S]\nk=v\n"}, {"[S]\r\na=1\r\n\r\n[T]\r\n", "k", "v", "[S]\r\na=1\r\nk=v\r\n\r\n[T]\r\n"},
        {"[S]\nk=1\nj=2\n", "k", nullptr, "[S]\nj=2\n"}, {"[S]\nj=2\n", "k", nullptr, "[S]\nj=2\n"},
        {"[R]\n[S]\nk=1\n; c\n[T]\nk=2\n", nullptr, nullptr, "[R]\n[T]\nk=2\n"}}) {
    // clang-format on
    EXPECT_TRUE(File(before).WriteString(key, value, "S"));
    EXPECT_EQ(Bytes(), after);
  }
  EXPECT_TRUE(File("[S]\nk=1\n").WriteString("k", "v", " S "));
  EXPECT_EQ(Bytes(), "[S]\nk=v\n");
  Profile profile(Path("file.ini").c_str());
  for (const auto& [key, value] :
       {std::pair{"k", "two\nlines"}, {"k=j", "v"}, {";k", "v"}, {"[k]", "v"}, {"[k", "]"}, {"", "v"}, {" ", "v"}}) {
    EXPECT_FALSE(profile.WriteString(key, value, "S")) << key << " cannot be read back";
  }
  EXPECT_EQ(Bytes(), "[S]\nk=v\n");
  EXPECT_FALSE(Profile(Path("no/folder.ini").c_str()).WriteString("k", "v", "S"));
  std::filesystem::permissions(Path("file.ini"), std::filesystem::perms(0640));
  std::filesystem::create_symlink(Path("file.ini"), Path("link"));
  EXPECT_TRUE(Profile(Path("link").c_str()).WriteString("k", "2", "S"));
  EXPECT_EQ(Bytes(), "[S]\nk=2\n");
  EXPECT_EQ(std::filesystem::status(Path("file.ini")).permissions(), std::filesystem::perms(0640));
  EXPECT_TRUE(std::filesystem::remove(Path("link")) && std::filesystem::exists(Path("file.ini")));
  // A full file system.
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit sizes{};
  getrlimit(RLIMIT_FSIZE, &sizes);
  const rlimit none = {0, sizes.rlim_max};
  setrlimit(RLIMIT_FSIZE, &none);
  EXPECT_FALSE(Profile(Path("file.ini").c_str()).WriteString("k", "3", "S"));
  setrlimit(RLIMIT_FSIZE, &sizes);
  EXPECT_EQ(Bytes(), "[S]\nk=2\n");
  const std::filesystem::directory_iterator files(Path(""));
  EXPECT_EQ(std::distance(begin(files), end(files)), 1) << "nothing stays beside the file";
}

#endif

TEST_F(ProfileTest, CopiedSectionsReplaceOldOnesAndFilesAreDeletedOnRequest) {
  const Profile source(Write("source.ini", "[S]\na=1\nb=" + std::string(300, 'x') + "\n").c_str());
  {
    Profile target(Write("file.ini", "[T]\nold=1\n[U]\n").c_str());
    target.CopySection(source, "S", "T");
    target.CopySection(source, "S", nullptr);
    const std::string keys = "a=1\nb=" + std::string(255, 'x') + "\n";
    EXPECT_EQ(Bytes(), "[U]\n[T]\n" + keys + "[S]\n" + keys);
    target.CopySection(source, "Nothing", "T");
    EXPECT_FALSE(target.HasSection("T"));
    target.DeleteOnClose = true;
  }
  EXPECT_FALSE(std::filesystem::exists(Path("file.ini")));
  EXPECT_TRUE(std::filesystem::exists(Path("source.ini")));
}

TEST_F(ProfileTest, NumbersAndBooleansUseTheFirst79Characters) {
  const Profile profile(Write("file.ini", "[S]\nlong=" + std::string(78, '0') +
                                              "123\non=ON\nyes=yEs\none= 1 \nx=1x\ntwo=2\nno=off\nempty=\n")
                            .c_str());
  EXPECT_EQ(profile.GetInt("long", "S", 5), 1);
  EXPECT_EQ(profile.GetInt("empty", "S", 5), 5);
  EXPECT_EQ(profile.GetDouble("absent", "S", 2.5), 2.5);
  for (const auto& [key, value] :
       {std::pair{"on", true}, {"yes", true}, {"one", true}, {"x", true}, {"two", false}, {"no", false}}) {
    EXPECT_EQ(profile.GetBool(key, "S", !value), value) << key;
  }
  EXPECT_TRUE(profile.GetBool("empty", "S", true));
}

// The reference is strtod and atoi of the C library, in the C locale.
TEST(CNumbersTest, NumbersAreReadAsInTheCLocaleInEveryLocale) {
  for (const char* text :
       {"0",      "1.5", "-2.25e2", "+3",       " \t 4", "1,5",  "1.5abc", "abc", "",     "-",     "+-5",
        "--5",    "-x",  "-0x",     ".5",       "5.",    ".",    "1e",     "1e+", "1e5",  "1e400", "-1e400",
        "1e-400", "inf", "-INF",    "infinity", "0x1p4", "0X.8", "0x",     "-0",  "0x-5", "0xinf"}) {
    char* end = nullptr;
    const double number = std::strtod(text, &end);
    const double expected = end == text ? 0 : number;
    ASSERT_NE(std::setlocale(LC_ALL, support::GermanLocale), nullptr) << "scripts/install-deps makes this locale";
    const double found = CDouble(text);
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(std::memcmp(&found, &expected, sizeof found), 0) << text << " gave " << found << ", not " << expected;
  }
  EXPECT_TRUE(std::isnan(CDouble("nan")));
  for (const char* text : {"0", "12", " -7x", "+5", "+-5", "", "x", "1.9", "2147483647", "-2147483648"}) {
    EXPECT_EQ(CInt(text), std::atoi(text)) << text;
  }
  EXPECT_EQ(CInt("99999999999"), 2147483647);
  EXPECT_EQ(CInt("99999999999999999999"), 2147483647);
  EXPECT_EQ(CInt("-99999999999999999999"), -2147483647 - 1);
}

}  // namespace
}  // namespace latigo
