// The core over the Windows ports: the settings and their lists round trip through the
// real registry.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "src/settings/mod_registry.h"
#include "src/settings/reg_settings.h"
#include "win32/ports/win32_ports.h"

namespace zintra::win32 {
namespace {

class NoObjects : public ObjectFactory {
 public:
  std::shared_ptr<AutomationObject> CreateObject(const std::string& prog_id) override {
    throw ZError(kErrCannotCreateObject, "No class " + prog_id, "test");
  }
};

class HostTest : public ::testing::Test {
 protected:
  void SetUp() override { Clear(); }
  void TearDown() override { Clear(); }
  void Clear() {
    bool not_found = false;
    modRegistry::DeleteKey(ports_.registry, kHKeyCurrentUser, "Software\\Brellow", &not_found);
  }

  Win32Ports ports_;
  NoObjects objects_;
  Host host_ = ports_.MakeHost(objects_);
};

TEST_F(HostTest, SettingsAndTheirListsRoundTripThroughTheRegistry) {
  RegSettings saved(host_.registry, host_.file_system, host_.platform);
  saved.Read(false, false, true);
  saved.LogLevel = 3;
  saved.LogMaxSizeKB = 512;
  saved.TrackedContactCategories = "Clients;Caf\xe9";
  saved.FoldersetCount = 2;
  for (StringList* list : {&saved.ContactFolderEntryIDs, &saved.ContactFolderStoreIDs,
                           &saved.EmailFolderEntryIDs, &saved.EmailFolderStoreIDs}) {
    list->Clear();
    list->Add("00AB01");
    list->Add("00CD02");
  }
  saved.FoldersetFlags.Clear();
  saved.FoldersetFlags.Add(3);
  saved.FoldersetFlags.Add(-1);
  saved.Save();
  EXPECT_TRUE(modRegistry::KeyExists(host_.registry, kHKeyCurrentUser, kProductKey));

  RegSettings read(host_.registry, host_.file_system, host_.platform);
  read.Read(false, false, true);
  EXPECT_EQ(read.LogLevel, 3);
  EXPECT_EQ(read.LogMaxSizeKB, 512);
  EXPECT_EQ(read.TrackedContactCategories, "Clients;Caf\xe9");
  EXPECT_EQ(read.FoldersetCount, 2);
  EXPECT_EQ(read.ContactFolderEntryIDs.Values(), saved.ContactFolderEntryIDs.Values());
  EXPECT_EQ(read.EmailFolderStoreIDs.Values(), saved.EmailFolderStoreIDs.Values());
  EXPECT_EQ(read.FoldersetFlags.Values(), saved.FoldersetFlags.Values());
  EXPECT_EQ(ports_.registry.OpenKeyCount(), 0u) << "the settings closed every key";
}

}  // namespace
}  // namespace zintra::win32
