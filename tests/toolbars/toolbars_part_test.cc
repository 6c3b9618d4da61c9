// Toolbars as a part of the add-in: created at its place in start-up, released at
// tear-down, left out with NeverLoadToolbars.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sim/toolbars/sim_toolbar_helper.h"
#include "sim/word/sim_word.h"
#include "tests/addin/addin_fixture.h"

namespace zintra::testing {
namespace {

class ToolbarsPartTest : public ::testing::Test {
 protected:
  ToolbarsPartTest() {
    fixture_.parts.Toolbars = ToolbarsPartFactory();
    fixture_.outlook.SetAddin([this](const Host& host) {
      host_ = std::make_unique<Host>(host);
      host_->toolbar_library = &library_;
      host_->word = &word_;
      auto connect = std::make_shared<zintra::Connect>(*host_, fixture_.errors, fixture_.strings,
                                                       fixture_.parts);
      connect_ = connect;
      return connect;
    });
  }
  // The add-in goes while the ports handed to it still exist.
  ~ToolbarsPartTest() override { fixture_.outlook.EndProcess(); }
  std::shared_ptr<ZintraAddinApp> Addin() {
    auto connect = connect_.lock();
    return connect ? connect->AddinApp() : nullptr;
  }

  AddinFixture fixture_;
  sim::SimToolbarLibrary library_;
  sim::SimWord word_{fixture_.outlook.files};
  std::unique_ptr<Host> host_;
  std::weak_ptr<zintra::Connect> connect_;
};

TEST_F(ToolbarsPartTest, ToolbarServesOutlooksWindowsUntilTearDown) {
  fixture_.outlook.Start(sim::StartWindows::kExplorer, true);
  ASSERT_NE(Addin()->Toolbars(), nullptr);
  auto helper = library_.Last();
  ASSERT_NE(helper, nullptr);
  EXPECT_EQ(helper->name(), "Zintra");
  EXPECT_EQ(helper->WindowCount(), 1);
  fixture_.outlook.OpenExplorer();
  EXPECT_EQ(helper->WindowCount(), 2);
  helper.reset();

  fixture_.outlook.Quit();
  EXPECT_EQ(library_.Last(), nullptr);
  for (const auto& line : fixture_.Warnings())
    EXPECT_EQ(line.find("Lingering"), std::string::npos) << line;
}

TEST_F(ToolbarsPartTest, NeverLoadToolbarsLeavesTheLibraryAlone) {
  fixture_.outlook.registry.SetDword(kHKeyCurrentUser, "Software\\Brellow\\Zintra",
                                     "NeverLoadToolbars", 1);
  fixture_.outlook.Start(sim::StartWindows::kExplorer, true);
  ASSERT_NE(Addin(), nullptr);
  EXPECT_EQ(Addin()->Toolbars(), nullptr);
  EXPECT_EQ(library_.created(), 0);
}

}  // namespace
}  // namespace zintra::testing
