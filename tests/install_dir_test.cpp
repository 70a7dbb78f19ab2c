// The install directory in the registry.
#include "frame/install_dir.h"

#include "platform/platform.h"
#include "support.h"

namespace latigo {
namespace {

// The directory found with these values in a registry of the test's own; null for no key. Once per process, since the
// result is kept.
std::string FoundWith(const char* first, const char* second) {
  constexpr const char* Own = "Software\\LATIGO test";
  HKEY machine = nullptr;
  RegDeleteTreeA(HKEY_CURRENT_USER, Own);
  RegCreateKeyA(HKEY_CURRENT_USER, Own, &machine);
  const auto set = [machine](const char* key, const char* value, DWORD type, DWORD end) {
    if (value != nullptr) {
      RegSetKeyValueA(machine, key, "InstallDir", type, value, static_cast<DWORD>(std::strlen(value)) + end);
    }
  };
  set("SOFTWARE\\BATHYX,Inc.\\BATHYX ONE", first, REG_SZ, 1);
  set("SOFTWARE\\Tidewrack Instruments Inc.\\BATHYX ONE", second, REG_BINARY, 0);
  support::SetEnvironment("TWI_BATHYX", "E:\\environment");
  const bool replaced = RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine) == ERROR_SUCCESS;
  std::string found = replaced ? GetInstallDir(nullptr) : "no registry";
  RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
  RegDeleteTreeA(HKEY_CURRENT_USER, Own);
  return found == GetInstallDir(nullptr) || found.empty() ? found : "not kept";
}

TEST(InstallDirTest, TheRegistryPrecedesTheEnvironmentAndTheFirstKeyTheSecond) {
  for (const auto& [first, second, expected] :
       std::vector<std::tuple<const char*, const char*, std::string>>{{"F:\\first", "S:\\second", "F:\\first"},
                                                                      {nullptr, "S:\\second", "S:\\second"},
                                                                      {"", "S:\\second", ""},
                                                                      {nullptr, nullptr, "E:\\environment"}}) {
    EXPECT_EXIT(std::exit(FoundWith(first, second) == expected ? 0 : 1), testing::ExitedWithCode(0), "") << expected;
  }
}

}  // namespace
}  // namespace latigo
