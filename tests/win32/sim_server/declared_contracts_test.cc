// The add-in's COM contracts held against Outlook's and Office's declarations (the served
// side's own table, transcribed from their type libraries): every source interface and
// event number the adapters advise on and dispatch by, and the kinds of assignment the
// served objects take, which are what Office would accept from the add-in.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "src/host/idt_extensibility2.h"
#include "win32/addin/idt_extensibility2_com.h"
#include "win32/com/dispatch_client.h"
#include "win32/com/outlook_events.h"
#include "win32/controls/property_page_com.h"
#include "win32/sim_server/dispatch_object.h"
#include "win32/sim_server/outlook_declarations.h"
#include "win32/sim_server/serve.h"

namespace zintra::win32 {
namespace {

namespace ev = outlook_events;

std::string IidText(const IID& iid) {
  wchar_t text[40] = {};
  StringFromGUID2(iid, text, 40);
  std::string out;
  for (const wchar_t* c = text; *c; ++c) out += static_cast<char>(*c);
  return out;
}

TEST(DeclaredContractsTest, TheAdaptersSourceInterfacesAreTheDeclaredOnes) {
  struct Case {
    const char* name;
    const IID& used;
    const IID& declared;
  };
  const Case cases[] = {
      {"ApplicationEvents_11", ev::kApplicationEvents11, declared::application_events_11::kIid},
      {"NameSpaceEvents", ev::kNameSpaceEvents, declared::name_space_events::kIid},
      {"ItemsEvents", ev::kItemsEvents, declared::items_events::kIid},
      {"ExplorersEvents", ev::kExplorersEvents, declared::explorers_events::kIid},
      {"InspectorsEvents", ev::kInspectorsEvents, declared::inspectors_events::kIid},
      {"ExplorerEvents_10", ev::kExplorerEvents10, declared::explorer_events_10::kIid},
      {"InspectorEvents_10", ev::kInspectorEvents10, declared::inspector_events_10::kIid},
      {"ItemEvents_10", ev::kItemEvents10, declared::item_events_10::kIid},
      {"_CommandBarButtonEvents", ev::kCommandBarButtonEvents,
       declared::command_bar_button_events::kIid},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(IidText(c.used), IidText(c.declared)) << c.name;
  }
  // The older inspector interface is a different one: an inspector raises nothing there.
  EXPECT_NE(IidText(ev::kInspectorEvents10), IidText(declared::inspector_events::kIid));
}

TEST(DeclaredContractsTest, TheAdaptersEventNumbersAreTheDeclaredOnes) {
  struct Case {
    const char* name;
    DISPID used;
    DISPID declared;
  };
  namespace app = declared::application_events_11;
  namespace explorer = declared::explorer_events_10;
  namespace inspector = declared::inspector_events_10;
  const Case cases[] = {
      {"Application.ItemSend", ev::kItemSend, app::kItemSend},
      {"Application.NewMail", ev::kNewMail, app::kNewMail},
      {"Application.OptionsPagesAdd", ev::kOptionsPagesAdd, app::kOptionsPagesAdd},
      {"Application.Startup", ev::kStartup, app::kStartup},
      {"Application.Quit", ev::kQuit, app::kQuit},
      {"NameSpace.OptionsPagesAdd", ev::kNameSpaceOptionsPagesAdd,
       declared::name_space_events::kOptionsPagesAdd},
      {"Items.ItemAdd", ev::kItemAdd, declared::items_events::kItemAdd},
      {"Items.ItemChange", ev::kItemChange, declared::items_events::kItemChange},
      {"Items.ItemRemove", ev::kItemRemove, declared::items_events::kItemRemove},
      {"Explorers.NewExplorer", ev::kNewExplorer, declared::explorers_events::kNewExplorer},
      {"Inspectors.NewInspector", ev::kNewInspector, declared::inspectors_events::kNewInspector},
      {"Explorer.Activate", ev::kWindowActivate, explorer::kActivate},
      {"Explorer.Deactivate", ev::kWindowDeactivate, explorer::kDeactivate},
      {"Explorer.SelectionChange", ev::kExplorerSelectionChange, explorer::kSelectionChange},
      {"Explorer.Close", ev::kExplorerClose, explorer::kClose},
      {"Inspector.Activate", ev::kWindowActivate, inspector::kActivate},
      {"Inspector.Deactivate", ev::kWindowDeactivate, inspector::kDeactivate},
      {"Inspector.Close", ev::kInspectorClose, inspector::kClose},
      {"Item.Close", ev::kItemClose, declared::item_events_10::kClose},
      {"CommandBarButton.Click", ev::kButtonClick, declared::command_bar_button_events::kClick},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.used, c.declared) << c.name;
  }
}

TEST(DeclaredContractsTest, TheAddinAnswersOfficesIDTExtensibility2) {
  namespace idt = declared::idt_extensibility2;
  EXPECT_EQ(IidText(__uuidof(IDTExtensibility2Com)), IidText(idt::kIid));
  EXPECT_EQ(kDispIdOnConnection, idt::kOnConnection);
  EXPECT_EQ(kDispIdOnDisconnection, idt::kOnDisconnection);
  EXPECT_EQ(kDispIdOnAddInsUpdate, idt::kOnAddInsUpdate);
  EXPECT_EQ(kDispIdOnStartupComplete, idt::kOnStartupComplete);
  EXPECT_EQ(kDispIdOnBeginShutdown, idt::kOnBeginShutdown);
}

// The add-in instance Office passes to OnConnection.
class AddIn : public ComAddIn {
 public:
  std::string TypeName() const override { return "COMAddIn"; }
  std::string ProgId() const override { return "ZintraAddin.Connect"; }
  std::string Description() const override { return "Zintra"; }
  bool Connect() const override { return true; }
};

HRESULT Assign(IDispatch* target, DISPID id, WORD flags, IDispatch* value) {
  VARIANT arg;
  arg.vt = VT_DISPATCH;
  arg.pdispVal = value;
  DISPID named = DISPID_PROPERTYPUT;
  DISPPARAMS params{&arg, &named, 1, 1};
  return target->Invoke(id, IID_NULL, 0, flags, &params, nullptr, nullptr, nullptr);
}

class DeclaredAssignmentTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
  }
  void TearDown() override { CoUninitialize(); }
};

TEST_F(DeclaredAssignmentTest, TheAddInsObjectTakesAPutAndRefusesAPutRefAsOfficeDoes) {
  namespace add_in = declared::com_add_in;
  ComPtr<IDispatch> served = Serve(std::make_shared<AddIn>());
  DispatchClient client(served, "COMAddIn");
  EXPECT_EQ(client.IdOf("Object"), add_in::kObject);
  EXPECT_EQ(client.IdOf("progid"), add_in::kProgId);
  EXPECT_EQ(client.IdOf("Connect"), add_in::kConnect);
  EXPECT_EQ(client.IdOf("Description"), add_in::kDescription);

  ComPtr<IDispatch> handler = Serve(std::make_shared<AddIn>());
  EXPECT_EQ(Assign(served.Get(), add_in::kObject, DISPATCH_PROPERTYPUTREF, handler.Get()),
            DISP_E_MEMBERNOTFOUND);
  EXPECT_FALSE(client.GetDispatch("Object")) << "a refused put-ref stored the object";
  EXPECT_EQ(Assign(served.Get(), add_in::kObject, DISPATCH_PROPERTYPUT, handler.Get()), S_OK);
  EXPECT_EQ(client.GetDispatch("Object").Get(), handler.Get());
  // A caller offering both kinds (as script engines do) is served the declared one.
  EXPECT_EQ(Assign(served.Get(), add_in::kObject, DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF,
                   nullptr),
            S_OK);
  EXPECT_FALSE(client.GetDispatch("Object"));
  EXPECT_EQ(client.GetValue("ProgId"), Value("ZintraAddin.Connect"));
}

TEST_F(DeclaredAssignmentTest, EachPropertyTakesOnlyTheKindOfAssignmentItDeclares) {
  ComPtr<DispatchObject> object = DispatchObject::Create("Window", nullptr);
  std::string last;
  auto note = [&last](const char* what) {
    return [&last, what](const DispatchArgs&) { last = what; };
  };
  auto none = [](const DispatchArgs&) { return Variant(); };
  object->Member("Caption", none, note("Caption"));
  object->Member("CurrentFolder", none, note("CurrentFolder"), DispatchObject::PutKind::kPutRef);
  object->Member("Item", none, note("Item"), DispatchObject::PutKind::kEither);
  object->Member("Count", none);
  IDispatch* d = object->AsDispatch();
  DispatchClient client(ComPtr<IDispatch>(d), "");
  struct Case {
    const char* member;
    WORD flags;
    HRESULT hr;
  };
  const Case cases[] = {
      {"Caption", DISPATCH_PROPERTYPUT, S_OK},
      {"Caption", DISPATCH_PROPERTYPUTREF, DISP_E_MEMBERNOTFOUND},
      {"CurrentFolder", DISPATCH_PROPERTYPUTREF, S_OK},
      {"CurrentFolder", DISPATCH_PROPERTYPUT, DISP_E_MEMBERNOTFOUND},
      {"Item", DISPATCH_PROPERTYPUT, S_OK},
      {"Item", DISPATCH_PROPERTYPUTREF, S_OK},
      {"Count", DISPATCH_PROPERTYPUT, DISP_E_MEMBERNOTFOUND},
      {"Count", DISPATCH_PROPERTYPUTREF, DISP_E_MEMBERNOTFOUND},
  };
  for (const Case& c : cases) {
    last.clear();
    EXPECT_EQ(Assign(d, client.IdOf(c.member), c.flags, d), c.hr) << c.member << " " << c.flags;
    EXPECT_EQ(last, c.hr == S_OK ? c.member : "") << c.member << " " << c.flags;
  }
}

// The options page control implements Outlook's PropertyPage and calls its site.
TEST(DeclaredContractsTest, TheOptionsPageImplementsThePageAndCallsTheSiteAsDeclared) {
  EXPECT_EQ(IidText(kIidPropertyPage), IidText(declared::property_page::kIid));
  EXPECT_EQ(kDispidGetPageInfo, declared::property_page::kGetPageInfo);
  EXPECT_EQ(kDispidDirty, declared::property_page::kDirty);
  EXPECT_EQ(kDispidApply, declared::property_page::kApply);
  EXPECT_EQ(IidText(kIidPropertyPageSite), IidText(declared::property_page_site::kIid));
  EXPECT_EQ(kDispidOnStatusChange, declared::property_page_site::kOnStatusChange);
}

}  // namespace
}  // namespace zintra::win32
