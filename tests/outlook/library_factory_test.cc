#include "src/outlook/library_factory.h"

#include <gtest/gtest.h>

#include "src/host/mapi_safe_item.h"
#include "src/host/mapi_utils.h"
#include "tests/outlook/outlook_fixture.h"
#include "tests/support/error_of.h"

namespace zintra::testing_support {
namespace {

class LibraryFactoryTest : public OutlookTest {
 protected:
  LibraryFactory factory_{host_.factory, errors_, strings_};
};

TEST_F(LibraryFactoryTest, EveryKindIsCreatedUnderItsPrefixedProgId) {
  for (int32_t kind = 1; kind <= 17; ++kind) {
    auto object = factory_.CreateLibraryObject(kind);
    ASSERT_NE(object, nullptr) << kind;
    EXPECT_EQ(host_.factory.Requests().back(), "TovuRedemption." + LibraryClassName(kind));
  }
  EXPECT_EQ(LibraryClassName(4), "TovuMAPIUtils");
  EXPECT_EQ(LibraryClassName(16), "TovuRDOSession");
  EXPECT_NE(factory_.Create<MapiUtils>(kLibMapiUtils), nullptr);
  EXPECT_THROW(factory_.Create<MapiUtils>(kLibMapiTable), ZError);
  EXPECT_TRUE(log_.lines.empty());
}

TEST_F(LibraryFactoryTest, KindOutsideTheTableFailsUnderTheBarePrefixAndAsksForAReinstall) {
  for (int32_t kind : {0, 18}) {
    log_.lines.clear();
    try {
      factory_.CreateLibraryObject(kind);
      ADD_FAILURE() << kind;
    } catch (const ZError& e) {
      EXPECT_EQ(e.Number(), kErrCannotCreateObject);
      EXPECT_EQ(e.Description(),
                "Please reinstall this product.\r\n\r\nActiveX component can't create object");
    }
    ASSERT_EQ(log_.lines.size(), 1u);
    EXPECT_EQ(log_.lines[0].kind, "Error");
    EXPECT_EQ(log_.lines[0].text, "Could not create class: TovuRedemption.");
    EXPECT_EQ(log_.lines[0].number, kErrCannotCreateObject);
  }
}

TEST_F(LibraryFactoryTest, AFailingRegisteredClassKeepsItsNumberAndText) {
  host_.profile.Faults().FailAlways("ObjectFactory.CreateObject", kMapiCallFailed,
                                    "Library not registered");
  std::optional<ZError> e = Raised([&] { factory_.CreateLibraryObject(kLibRdoSession); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->Number(), kMapiCallFailed);
  EXPECT_EQ(e->Description(), "Please reinstall this product.\r\n\r\nLibrary not registered");
  ASSERT_EQ(log_.lines.size(), 1u);
  EXPECT_EQ(log_.lines[0].text, "Could not create class: TovuRedemption.TovuRDOSession");
}

TEST_F(LibraryFactoryTest, SafeItemPerItemTypeAndNoneForNotes) {
  const std::pair<int32_t, const char*> kExpected[] = {
      {0, "TovuMailItem"}, {1, "TovuAppointmentItem"}, {2, "TovuContactItem"},
      {3, "TovuTaskItem"}, {4, "TovuJournalItem"},     {6, "TovuPostItem"},
      {7, "TovuDistList"}};
  for (auto [type, name] : kExpected) {
    auto safe = factory_.CreateSafeItem(type);
    ASSERT_NE(safe, nullptr) << type;
    EXPECT_EQ(safe->TypeName(), name);
  }
  size_t requests = host_.factory.Requests().size();
  EXPECT_EQ(factory_.CreateSafeItem(kOlNoteItem), nullptr);
  EXPECT_EQ(factory_.CreateSafeItem(99), nullptr);
  EXPECT_EQ(host_.factory.Requests().size(), requests);  // nothing was even asked for
}

}  // namespace
}  // namespace zintra::testing_support
