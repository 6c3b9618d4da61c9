// The served profile seen from a late-bound COM caller: member names, values, errors,
// events through connection points, unwrapping of our own objects handed back, the
// library's classes by ProgID, and no object left alive once the caller lets go.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <vector>

#include "sim/mapi/sim_outlook_host.h"
#include "sim/outlook/profile_builder.h"
#include "src/core/z_error.h"
#include "src/host/mapi_object.h"
#include "tests/support/error_of.h"
#include "win32/com/bstr.h"
#include "win32/com/com_error.h"
#include "win32/com/dispatch_client.h"
#include "win32/com/event_sink.h"
#include "win32/sim_server/dispatch_object.h"
#include "win32/sim_server/outlook_declarations.h"
#include "win32/sim_server/serve.h"
#include "win32/sim_server/served_classes.h"

namespace zintra::win32 {
namespace {

namespace items_ev = declared::items_events;
namespace app_ev = declared::application_events_11;
using sim::ProfileBuilder;

class SimServerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
    live_before_ = DispatchObject::LiveCount();
    ProfileBuilder b(host_->profile);
    b.Mailbox(ProfileBuilder::Exchange("Jane Doe", "jdoe", "CONTOSO"));
    b.MailFrom(ProfileBuilder::Smtp("Ann Lee", "ann@fabrikam.com"), {"Quote", "Body text"});
    b.MailFrom(ProfileBuilder::Smtp("Bob Ray", "bob@fabrikam.com"), {"Order", ""});
    app_ = DispatchClient(Serve(host_->application), "Application");
  }
  void TearDown() override {
    app_ = DispatchClient();
    EXPECT_EQ(DispatchObject::LiveCount(), live_before_) << "a served object was leaked";
    host_.reset();
    CoUninitialize();
  }
  DispatchClient Obj(const DispatchClient& from, const char* member,
                     std::vector<Variant> args = {}) {
    return DispatchClient(from.GetDispatch(member, std::move(args)), "");
  }
  DispatchClient Inbox() {
    return Obj(Obj(app_, "GetNamespace", {Arg("MAPI")}), "GetDefaultFolder", {Arg(kOlFolderInbox)});
  }

  std::unique_ptr<sim::SimOutlookHost> host_ = std::make_unique<sim::SimOutlookHost>();
  DispatchClient app_;
  int64_t live_before_ = 0;
};

std::string TypeNameOf(IDispatch* object) {
  ComPtr<ITypeInfo> info;
  if (FAILED(object->GetTypeInfo(0, 0, info.Put()))) return {};
  Bstr name;
  if (FAILED(info->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr))) {
    return {};
  }
  return name.ToUtf8();
}

// Each call must fail with its number, as a late-bound caller sees it.
struct FailCase {
  const char* what;
  std::function<void()> call;
  int32_t number;
};
void ExpectFailures(std::initializer_list<FailCase> cases) {
  for (const FailCase& c : cases) EXPECT_EQ(ErrorOf(c.call), c.number) << c.what;
}

HRESULT Create(REFCLSID clsid, ComPtr<IDispatch>& object, DWORD context = CLSCTX_INPROC_SERVER) {
  return CoCreateInstance(clsid, nullptr, context, IID_IDispatch,
                          reinterpret_cast<void**>(object.Put()));
}

TEST_F(SimServerTest, WalksTheProfileByOutlooksMemberNames) {
  EXPECT_EQ(app_.GetValue("Version").ToString(), "11.0.0.8312");
  DispatchClient inbox = Inbox();
  EXPECT_EQ(inbox.GetValue("Name").ToString(), "Inbox");
  EXPECT_EQ(inbox.GetValue("Class").ToLong(), 2);
  EXPECT_EQ(TypeNameOf(inbox.Object().Get()), "MAPIFolder");
  DispatchClient items = Obj(inbox, "Items");
  EXPECT_EQ(items.GetValue("Count").ToLong(), 2);
  items.Call("Sort", {Arg("[ReceivedTime]"), Arg(true)});
  DispatchClient first = Obj(items, "GetFirst");
  EXPECT_EQ(first.GetValue("Subject").ToString(), "Order");
  EXPECT_EQ(TypeNameOf(first.Object().Get()), "MailItem");
  EXPECT_EQ(first.GetValue("ReceivedTime").Type(), ValueType::kDate);
  EXPECT_EQ(Obj(items, "GetNext").GetValue("Subject").ToString(), "Quote");
  EXPECT_FALSE(items.GetDispatch("GetNext")) << "Nothing at the end of the walk";
  // The default member of a collection is Item.
  Variant by_default;
  DISPPARAMS params{};
  Variant index(Value(1));
  params.rgvarg = index.Get();
  params.cArgs = 1;
  ASSERT_EQ(items.Object()->Invoke(DISPID_VALUE, IID_NULL, 0, DISPATCH_PROPERTYGET, &params,
                                   by_default.Put(), nullptr, nullptr),
            S_OK);
  EXPECT_TRUE(by_default.ToObject());
  // Windows keep their identity while served, as Outlook's do (an `Is` compares them).
  host_->application->OpenExplorer(host_->profile.DefaultFolder(kOlFolderInbox));
  ComPtr<IDispatch> active = app_.GetDispatch("ActiveExplorer");
  EXPECT_EQ(active.Get(), Obj(app_, "Explorers").GetDispatch("Item", {Arg(1)}).Get());
  EXPECT_NE(first.Object().Get(), Obj(items, "GetFirst").Object().Get()) << "items are views";
}

TEST_F(SimServerTest, PutsReachTheStoreAndOptionalArgumentsTakeOutlooksDefaults) {
  DispatchClient items = Obj(Inbox(), "Items");
  DispatchClient mail = Obj(items, "Add");  // Type omitted: a mail item
  mail.Put("Subject", Arg("Fresh"));
  DispatchClient props = Obj(mail, "UserProperties");
  DispatchClient tag = Obj(props, "Add", {Arg("Zintra Tag"), Arg(kOlText)});
  tag.Put("Value", Arg("Processing"));
  mail.Call("Save");
  auto record = host_->profile.DefaultFolder(kOlFolderInbox);
  ASSERT_EQ(items.GetValue("Count").ToLong(), 3);
  DispatchClient found = Obj(items, "Find", {Arg("[Subject] = 'Fresh'")});
  ASSERT_TRUE(found);
  EXPECT_EQ(Obj(Obj(found, "UserProperties"), "Find", {Arg("zintra tag")}).GetValue("Value"),
            Value("Processing"));
}

TEST_F(SimServerTest, FailuresArriveWithThePlatformsNumbers) {
  DispatchClient ns = Obj(app_, "Session");
  DispatchClient contacts = Obj(ns, "GetDefaultFolder", {Arg(kOlFolderContacts)});
  DispatchClient mail = Obj(Obj(Inbox(), "Items"), "GetFirst");
  ExpectFailures({
      {"unknown folder number", [&] { ns.Get("GetDefaultFolder", {Arg(77)}); }, kMapiNotFound},
      {"unknown entry id", [&] { ns.Get("GetItemFromID", {Arg("00ff")}); }, kMapiNotFound},
      {"member the kind lacks", [&] { mail.Get("FullName"); }, kErrNoSuchMember},
      {"member nobody has", [&] { mail.Get("NoSuchThing"); }, kErrNoSuchMember},
      {"index out of range", [&] { Obj(mail, "Recipients").Get("Item", {Arg(9)}); },
       kErrInvalidCall},
      {"missing argument", [&] { ns.Get("GetDefaultFolder"); }, kErrArgumentNotOptional},
      {"folder of the wrong kind", [&] { mail.Get("Move", {Arg(mail.Object())}); },
       kErrTypeMismatch},
      {"read-only property", [&] { mail.Put("EntryID", Arg("x")); }, kErrNoSuchMember},
  });
  // An injected fault surfaces as DISP_E_EXCEPTION with the fault's own number.
  host_->profile.Faults().FailAlways("Items.GetFirst", kMapiNetworkError, "link down");
  DispatchClient items = Obj(contacts, "Items");
  std::optional<ZError> e = Raised([&] { items.Get("GetFirst"); });
  ASSERT_TRUE(e) << "the fault did not fire";
  EXPECT_EQ(e->Number(), kMapiNetworkError);
  EXPECT_EQ(e->Description(), "link down");
}

// Office's command bars take what their type library declares and refuse the rest: more
// arguments than a member declares, and Style on a control that is not a button.
TEST_F(SimServerTest, CommandBarsRefuseWhatOfficeDoesNotDeclare) {
  host_->application->OpenExplorer(ProfileBuilder(host_->profile).Default(kOlFolderInbox));
  DispatchClient bars = Obj(Obj(app_, "ActiveExplorer"), "CommandBars");
  DispatchClient popup =
      Obj(Obj(Obj(bars, "Item", {Arg("Menu Bar")}), "Controls"), "Item", {Arg(1)});
  DispatchClient bar = Obj(bars, "Add", {Arg("Mine"), Arg(kMsoBarTop), Missing(), Arg(true)});
  DispatchClient controls = Obj(bar, "Controls");
  DispatchClient button =
      Obj(controls, "Add", {Arg(kMsoControlButton), Arg(1), Missing(), Missing(), Arg(true)});
  button.Put("Style", Arg(3));  // msoButtonIconAndCaption
  EXPECT_EQ(button.GetValue("Style").ToLong(), 3);
  ExpectFailures({
      {"Style of a popup", [&] { popup.Get("Style"); }, kErrNoSuchMember},
      {"Style put on a popup", [&] { popup.Put("Style", Arg(1)); }, kErrNoSuchMember},
      {"Id put", [&] { button.Put("Id", Arg(5)); }, kErrNoSuchMember},
      {"CommandBars.Add with five arguments",
       [&] {
         bars.Call("Add", {Arg("X"), Arg(1), Arg(false), Arg(true), Arg(1)});
       },
       kErrWrongArgumentCount},
      {"CommandBars.FindControl with five arguments",
       [&] {
         bars.Call("FindControl", {Arg(1), Arg(1), Arg("t"), Arg(false), Arg(true)});
       },
       kErrWrongArgumentCount},
      {"CommandBar.FindControl with six arguments",
       [&] {
         bar.Call("FindControl", {Arg(1), Arg(1), Arg("t"), Arg(false), Arg(true), Arg(1)});
       },
       kErrWrongArgumentCount},
      {"CommandBarControls.Add with six arguments",
       [&] {
         controls.Call("Add", {Arg(1), Arg(1), Missing(), Missing(), Arg(true), Arg(1)});
       },
       kErrWrongArgumentCount},
  });
  EXPECT_EQ(controls.GetValue("Count").ToLong(), 1) << "a refused Add added a control";
}

TEST_F(SimServerTest, ItemEventsReachAdvisedSinksWithTheItem) {
  DispatchClient items = Obj(Inbox(), "Items");
  std::vector<std::pair<DISPID, std::string>> seen;
  auto sink = EventSink::Create(items_ev::kIid, [&](DISPID id, const EventArgs& args) {
    std::string subject;
    if (args.Count() == 1) {
      subject = DispatchClient(args.ObjectAt(0), "").GetValue("Subject").ToString();
    }
    seen.emplace_back(id, subject);
  });
  {
    Advise advice(ComPtr<IUnknown>(items.Object().Get()), items_ev::kIid, sink, "Items");
    DispatchClient mail = DispatchClient(app_.GetDispatch("CreateItem", {Arg(kOlMailItem)}), "");
    mail.Put("Subject", Arg("Arrived"));
    ProfileBuilder(host_->profile)
        .MailFrom(ProfileBuilder::Smtp("Cy", "cy@fabrikam.com"), {"Delivered", ""});
    DispatchClient first = Obj(items, "Find", {Arg("[Subject] = 'Quote'")});
    first.Put("Subject", Arg("Quote 2"));
    first.Call("Save");
    first.Call("Delete");
  }
  host_->profile.Faults().Clear();
  ProfileBuilder(host_->profile).MailFrom(ProfileBuilder::Smtp("Di", "di@x.com"), {"Late", ""});
  const std::vector<std::pair<DISPID, std::string>> expected = {{items_ev::kItemAdd, "Delivered"},
                                                                {items_ev::kItemChange, "Quote 2"},
                                                                {items_ev::kItemRemove, ""}};
  EXPECT_EQ(seen, expected) << "unadvised sinks hear nothing more";
}

TEST_F(SimServerTest, ASinkCancelsTheSendThroughItsByReferenceArgument) {
  auto sink = EventSink::Create(app_ev::kIid, [](DISPID id, const EventArgs& args) {
    if (id == app_ev::kItemSend) args.SetBoolAt(1, true);
  });
  Advise advice(ComPtr<IUnknown>(app_.Object().Get()), app_ev::kIid, sink, "App");
  auto item = host_->application->CreateItem(kOlMailItem);
  item->Recipients()->Add("ann@fabrikam.com");
  EXPECT_FALSE(host_->application->Send(item));
  advice.Reset();
  EXPECT_TRUE(host_->application->Send(item));
}

TEST_F(SimServerTest, LibraryClassesAreCreatedByProgIdOverTheSameProfile) {
  ServedClasses classes(host_->factory, ServedClasses::LibraryProgIds());
  ASSERT_TRUE(classes.Ok()) << classes.Failures().front();
  CLSID clsid{};
  ASSERT_EQ(CLSIDFromProgID(L"TovuRedemption.TovuMAPIUtils", &clsid), S_OK);
  ComPtr<IDispatch> utils_object;
  ASSERT_EQ(Create(clsid, utils_object, CLSCTX_ALL), S_OK);
  DispatchClient utils(utils_object, "TovuMAPIUtils");
  EXPECT_EQ(TypeNameOf(utils_object.Get()), "TovuMAPIUtils");

  // An Outlook item's MAPI object handed back is recognised as the same message.
  DispatchClient mail = Obj(Obj(Inbox(), "Items"), "Find", {Arg("[Subject] = 'Quote'")});
  ComPtr<IDispatch> message = mail.GetDispatch("MAPIOBJECT");
  EXPECT_EQ(utils.GetValue("HrGetOneProp", {Arg(message), Arg(kPrSubject)}), Value("Quote"));
  utils.Call("HrSetOneProp", {Arg(message), Arg(kPrSubject), Arg("Quote (logged)"), Arg(true)});
  EXPECT_EQ(mail.GetValue("Subject"), Value("Quote (logged)"));

  // A safe item wraps the Outlook item that is put into it.
  ComPtr<IDispatch> safe_object;
  ASSERT_EQ(Create(ServedClasses::ClassIdOf("TovuRedemption.TovuMailItem"), safe_object), S_OK);
  DispatchClient safe(safe_object, "");
  safe.PutRef("Item", Arg(mail.Object()));
  EXPECT_EQ(Obj(safe, "Sender").GetValue("Address"), Value("ann@fabrikam.com"));
  EXPECT_EQ(classes.Created(), 2);

  // A failing creation returns an HRESULT, and the class registry saw the request.
  host_->profile.Faults().FailAlways("ObjectFactory.CreateObject", kMapiNotInitialized);
  ComPtr<IDispatch> refused;
  EXPECT_EQ(Create(clsid, refused, CLSCTX_ALL), static_cast<HRESULT>(kMapiNotInitialized));
  EXPECT_FALSE(refused);
}

TEST_F(SimServerTest, TheProgIdKeysLeaveWithTheClasses) {
  CLSID clsid{};
  {
    ServedClasses classes(host_->factory, {"TovuRedemption.TovuRDOSession"});
    EXPECT_EQ(CLSIDFromProgID(L"TovuRedemption.TovuRDOSession", &clsid), S_OK);
  }
  EXPECT_NE(CLSIDFromProgID(L"TovuRedemption.TovuRDOSession", &clsid), S_OK);
}

TEST_F(SimServerTest, MapiTableRowsComeAsArraysWithErrorCells) {
  ServedClasses classes(host_->factory, {"TovuRedemption.TovuMAPITable"});
  ComPtr<IDispatch> table_object;
  ASSERT_EQ(Create(ServedClasses::ClassIdOf("TovuRedemption.TovuMAPITable"), table_object), S_OK);
  DispatchClient table(table_object, "");
  table.PutRef("Item", Arg(Inbox().Object()));
  SAFEARRAY* tags = SafeArrayCreateVector(VT_I4, 0, 2);
  LONG i = 0;
  LONG subject = kPrSubject, missing = 0x7FFF001E;
  SafeArrayPutElement(tags, &i, &subject);
  i = 1;
  SafeArrayPutElement(tags, &i, &missing);
  Variant columns;
  columns.Get()->vt = VT_ARRAY | VT_I4;
  columns.Get()->parray = tags;
  table.Put("Columns", columns);
  EXPECT_EQ(table.GetValue("RowCount").ToLong(), 2);
  Variant rows = table.Get("GetRows", {Arg(10)});
  ASSERT_EQ(rows.Type(), VT_ARRAY | VT_VARIANT);
  LONG upper = -1;
  SafeArrayGetUBound(rows.Get()->parray, 1, &upper);
  ASSERT_EQ(upper, 1);
  Variant row;
  i = 0;
  SafeArrayGetElement(rows.Get()->parray, &i, row.Put());
  ASSERT_EQ(row.Type(), VT_ARRAY | VT_VARIANT);
  Variant cell;
  SafeArrayGetElement(row.Get()->parray, &i, cell.Put());
  EXPECT_EQ(cell.ToValue(), Value("Quote"));
  i = 1;
  SafeArrayGetElement(row.Get()->parray, &i, cell.Put());
  EXPECT_EQ(cell.Type(), VT_ERROR);
  EXPECT_EQ(cell.Get()->scode, kMapiNotFound);
}

TEST(DispatchObjectTest, NoExceptionLeavesInvokeAndEachBecomesAnHresult) {
  ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
  {
    ComPtr<DispatchObject> object = DispatchObject::Create("Thrower", nullptr);
    object->Member("Platform",
                   [](const DispatchArgs&) -> Variant { throw ZError(kMapiNoAccess, "denied"); });
    object->Member("Foreign", [](const DispatchArgs&) -> Variant {
      throw std::runtime_error("broken invariant");
    });
    object->Member("Anything", [](const DispatchArgs&) -> Variant { throw 42; });
    DispatchClient client(ComPtr<IDispatch>(object->AsDispatch()), "");
    struct Case {
      const char* member;
      HRESULT hr;
      SCODE scode;
    };
    for (const Case& c :
         {Case{"Platform", DISP_E_EXCEPTION, kMapiNoAccess},
          Case{"Foreign", DISP_E_EXCEPTION, E_UNEXPECTED}, Case{"Anything", E_UNEXPECTED, 0}}) {
      EXCEPINFO info{};
      DISPPARAMS none{};
      Variant result;
      EXPECT_EQ(object->Invoke(client.IdOf(c.member), IID_NULL, 0, DISPATCH_METHOD, &none,
                               result.Put(), &info, nullptr),
                c.hr)
          << c.member;
      EXPECT_EQ(info.scode, c.scode) << c.member;
      SysFreeString(info.bstrDescription);
      SysFreeString(info.bstrSource);
      SysFreeString(info.bstrHelpFile);
    }
  }
  CoUninitialize();
}

}  // namespace
}  // namespace zintra::win32
