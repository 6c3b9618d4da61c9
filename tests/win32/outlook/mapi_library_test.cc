// The MAPI library's objects through the server and the adapters: tables read in
// chunks, properties through the utility object, the session over Outlook's logon,
// safe items; and CreateObject's failures.
#include <gtest/gtest.h>

#include "src/host/mapi_safe_item.h"
#include "src/host/mapi_table.h"
#include "src/host/mapi_utils.h"
#include "src/host/outlook_constants.h"
#include "tests/win32/outlook/served_profile.h"
#include "win32/outlook/com_mapi_table.h"
#include "win32/outlook/com_object_factory.h"

namespace zintra::win32::testing {
namespace {

template <typename Port>
std::shared_ptr<Port> As(const std::shared_ptr<AutomationObject>& object) {
  auto port = std::dynamic_pointer_cast<Port>(object);
  EXPECT_TRUE(port) << object->TypeName();
  return port;
}

std::vector<std::vector<std::string>> ReadAll(MapiTable& table, int32_t chunk) {
  std::vector<std::vector<std::string>> out;
  table.GoToFirst();
  for (MapiRows rows = table.GetRows(chunk); !rows.rows.empty(); rows = table.GetRows(chunk)) {
    EXPECT_FALSE(rows.IsError());
    for (const MapiRow& row : rows.rows) {
      std::vector<std::string> cells;
      for (const MapiCell& cell : row.cells) {
        cells.push_back(cell.IsError() ? "error " + std::to_string(cell.error)
                                       : cell.value.ToString());
      }
      out.push_back(cells);
    }
  }
  return out;
}

TEST(MapiLibraryTest, ATableReadsInChunksAsTheLibraryDoes) {
  ServedProfile p;
  auto direct = As<MapiTable>(p.classes.CreateObject("TovuRedemption.TovuMAPITable"));
  auto adapted = As<MapiTable>(p.Library("TovuMAPITable"));
  direct->SetItem(p.sim_app->Session()->GetDefaultFolder(kOlFolderInbox));
  adapted->SetItem(p.app->Session()->GetDefaultFolder(kOlFolderInbox));
  const std::vector<int32_t> columns{kPrSubject, kPrMessageDeliveryTime, kPrSenderName,
                                     kPrSmtpAddress};
  direct->SetColumns(columns);
  adapted->SetColumns(columns);
  EXPECT_EQ(adapted->Columns(), columns);
  EXPECT_EQ(adapted->RowCount(), direct->RowCount());
  auto expected = ReadAll(*direct, 1);
  ASSERT_EQ(expected.size(), 2u);
  EXPECT_EQ(ReadAll(*adapted, 1), expected);
  EXPECT_EQ(ReadAll(*adapted, 50), expected);
  EXPECT_NE(expected[0][3].find("error"), std::string::npos);  // a cell the message lacks
}

TEST(MapiLibraryTest, ATableWhoseFolderIsGoneGivesAnErrorResult) {
  ServedProfile p;
  auto table = As<MapiTable>(p.Library("TovuMAPITable"));
  EXPECT_EQ(ErrorOf([&] { table->GetRows(5); }), kMapiInvalidParameter);
  p.build.Mails(p.build.Folder("Old"), 3);
  auto old = p.app->Session()->Folders()->Item(1)->Folders()->Item("Old");
  table->SetItem(old->Items());
  table->SetColumns({kPrSubject});
  EXPECT_EQ(table->GetRows(2).rows.size(), 2u);
  p.profile.Faults().FailOnCall("MapiTable.GetRows", 1, kMapiNetworkError);
  EXPECT_EQ(ErrorOf([&] { table->GetRows(5); }), kMapiNetworkError);
  old->Delete();
  MapiRows rows = table->GetRows(5);
  EXPECT_TRUE(rows.IsError());
  EXPECT_EQ(rows.error, kMapiObjectDeleted);
  EXPECT_TRUE(rows.rows.empty());
}

TEST(MapiLibraryTest, RowsOfEveryShapeTheLibraryAnswers) {
  // Two rows by two columns, the second cell of the first row an error.
  SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
  SAFEARRAY* sa = SafeArrayCreate(VT_VARIANT, 2, bounds);
  Variant answer;
  answer.Get()->vt = VT_ARRAY | VT_VARIANT;
  answer.Get()->parray = sa;
  const char* texts[2][2] = {{"a", nullptr}, {"c", "d"}};
  for (LONG r = 0; r < 2; ++r) {
    for (LONG c = 0; c < 2; ++c) {
      LONG at[2] = {r, c};
      Variant cell = texts[r][c] ? Variant(Value(texts[r][c])) : Variant();
      if (!texts[r][c]) {
        cell.Get()->vt = VT_ERROR;
        cell.Get()->scode = kMapiNotFound;
      }
      SafeArrayPutElement(sa, at, cell.Get());
    }
  }
  MapiRows rows = RowsOf(*answer.Get());
  ASSERT_EQ(rows.rows.size(), 2u);
  EXPECT_EQ(rows.rows[0].cells[1].error, kMapiNotFound);
  EXPECT_EQ(rows.rows[1].cells[1].value, Value("d"));
  Variant failed;
  failed.Get()->vt = VT_ERROR;
  failed.Get()->scode = kMapiObjectDeleted;
  EXPECT_EQ(RowsOf(*failed.Get()).error, kMapiObjectDeleted);
  EXPECT_TRUE(RowsOf(*Variant().Get()).rows.empty());
}

TEST(MapiLibraryTest, UtilityPropertiesAgreeWithOutlookAndRaiseNewMail) {
  ServedProfile p;
  auto utils = As<MapiUtils>(p.Library("TovuMAPIUtils"));
  utils->SetMAPIOBJECT(p.app->Session()->MAPIOBJECT());
  auto item = p.app->Session()->GetDefaultFolder(kOlFolderInbox)->Items()->GetFirst();
  auto mapi = item->MAPIOBJECT();
  EXPECT_EQ(utils->HrGetOneProp(mapi, kPrSubject), Value(item->Subject()));
  int32_t tag = utils->GetIDsFromNames(mapi, kPsPublicStrings, Value("Zintra"), true);
  ASSERT_NE(tag, 0);
  utils->HrSetOneProp(mapi, tag | kPtString8, Value("logged"), true);
  EXPECT_EQ(utils->HrGetOneProp(item->MAPIOBJECT(), tag | kPtString8), Value("logged"));
  EXPECT_TRUE(utils->CompareIDs(item->EntryID(), item->EntryID()));
  EXPECT_TRUE(utils->HrGetOneProp(mapi, PropTag(0x7FF0, kPtLong)).IsEmpty());

  std::vector<std::string> arrived;
  Connection c = utils->NewMail.Connect([&](std::string id) { arrived.push_back(id); });
  auto mail = p.sim_app->CreateItem(kOlMailItem);
  p.sim_app->Deliver(mail);
  ASSERT_EQ(arrived.size(), 1u);
  EXPECT_EQ(arrived[0], mail->EntryID());
}

TEST(MapiLibraryTest, TheSessionAndSafeItemsShareOutlooksStore) {
  ServedProfile p;
  auto session = As<RdoSession>(p.Library("TovuRDOSession"));
  EXPECT_EQ(ErrorOf([&] { session->GetDefaultFolder(kOlFolderInbox); }), kMapiNotInitialized);
  session->SetMAPIOBJECT(p.app->Session()->MAPIOBJECT());
  EXPECT_TRUE(session->LoggedOn());
  auto inbox = session->GetDefaultFolder(kOlFolderInbox);
  EXPECT_EQ(inbox->Name(), "Inbox");
  auto item = p.app->Session()->GetDefaultFolder(kOlFolderInbox)->Items()->GetFirst();
  auto message = session->GetMessageFromID(item->EntryID());
  EXPECT_EQ(message->Subject(), item->Subject());
  EXPECT_EQ(message->Parent()->EntryID(), inbox->EntryID());

  auto safe = As<SafeItem>(p.Library("TovuMailItem"));
  EXPECT_EQ(safe->TypeName(), "TovuMailItem");
  safe->SetItem(item);
  EXPECT_EQ(safe->Body(), item->Body());
  EXPECT_EQ(safe->Sender()->Address(), "ann@fabrikam.com");
  EXPECT_EQ(safe->Item()->EntryID(), item->EntryID());
  auto copy = safe->CopyTo(p.app->Session()->GetDefaultFolder(kOlFolderDrafts));
  EXPECT_EQ(copy->Subject(), item->Subject());
}

TEST(ObjectFactoryTest, ClassesAreMadeByProgIdOrByTheAddinsOwnCode) {
  ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
  {
    ComObjectFactory factory;
    EXPECT_EQ(ErrorOf([&] { factory.CreateObject("Zintra.NoSuchClass"); }), kErrCannotCreateObject);
    struct Native : AutomationObject {
      std::string TypeName() const override { return "Subclasser"; }
    };
    factory.RegisterNative("TovuSubclasser.Subclasser", [] { return std::make_shared<Native>(); });
    EXPECT_EQ(factory.CreateObject("tovusubclasser.subclasser")->TypeName(), "Subclasser");
    factory.RegisterNative("Zintra.Broken", [] { return std::shared_ptr<AutomationObject>(); });
    EXPECT_EQ(ErrorOf([&] { factory.CreateObject("Zintra.Broken"); }), kErrCannotCreateObject);
  }
  CoUninitialize();
}

}  // namespace
}  // namespace zintra::win32::testing
