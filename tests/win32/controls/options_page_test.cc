// The options page control created by its ProgID and hosted as Outlook's Options dialog
// hosts it: its PropertyPage members as Outlook's type library declares them, edits
// that make it dirty and tell its site, Apply writing the registry in the settings'
// layout, bad input refused with a message and nothing saved, and values an enterprise
// policy fixes shown disabled.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <optional>
#include <vector>

#include "tests/win32/com_host/com_host.h"
#include "tests/win32/controls/page_container.h"
#include "win32/com/unicode.h"
#include "win32/sim_server/outlook_declarations.h"

namespace zintra::win32 {

// Outlook's PropertyPage ({0006307E-0000-0000-C000-000000000046}) as its type library
// lays it out: IDispatch, then GetPageInfo, the Dirty getter and Apply. Outside the
// file's anonymous namespace: there GCC would take it for a class nothing derives from
// and call its pure virtual members directly.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
struct OutlookPropertyPage : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE GetPageInfo(BSTR* HelpFile, LONG* HelpContext) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Dirty(VARIANT_BOOL* Dirty) = 0;
  virtual HRESULT STDMETHODCALLTYPE Apply() = 0;
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
namespace {

constexpr wchar_t kProgId[] = L"ZintraControls.OutlookPropertiesPage";
constexpr char kProduct[] = "Software\\Brellow\\Zintra";
constexpr char kPolicy[] = "Software\\Policies\\Brellow\\Zintra";

constexpr IID kIidPropertyPage = declared::property_page::kIid;

std::optional<DWORD> Dword(HKEY hive, const std::string& key, const std::string& name) {
  DWORD value = 0, size = sizeof(value);
  if (RegGetValueA(hive, key.c_str(), name.c_str(), RRF_RT_REG_DWORD, nullptr, &value, &size) !=
      ERROR_SUCCESS) {
    return std::nullopt;
  }
  return value;
}

std::optional<std::string> Text(HKEY hive, const std::string& key, const std::string& name) {
  char value[2048] = {};
  DWORD size = sizeof(value);
  if (RegGetValueA(hive, key.c_str(), name.c_str(), RRF_RT_REG_SZ, nullptr, value, &size) !=
      ERROR_SUCCESS) {
    return std::nullopt;
  }
  return std::string(value);
}

ComPtr<IDispatch> CreatePage() {
  CLSID clsid{};
  ComPtr<IDispatch> page;
  if (SUCCEEDED(CLSIDFromProgID(kProgId, &clsid))) {
    CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                     reinterpret_cast<void**>(page.Put()));
  }
  return page;
}

class OptionsPageTest : public ::testing::Test {
 protected:
  void SetUp() override {
    CLSID clsid{};
    if (FAILED(CLSIDFromProgID(kProgId, &clsid)) && !getenv("ZINTRA_REQUIRE_ADDIN")) {
      GTEST_SKIP() << "ZintraControls.OutlookPropertiesPage is not registered";
    }
    page_ = CreatePage();
    ASSERT_TRUE(page_) << "is ZintraControls.ocx registered (regsvr32)?";
  }
  void TearDown() override { RegDeleteTreeA(HKEY_CURRENT_USER, kProduct); }

  HRESULT Apply() {
    ComPtr<OutlookPropertyPage> page;
    page_->QueryInterface(kIidPropertyPage, reinterpret_cast<void**>(page.Put()));
    return page ? page->Apply() : E_NOINTERFACE;
  }
  bool Dirty() {
    ComPtr<OutlookPropertyPage> page;
    page_->QueryInterface(kIidPropertyPage, reinterpret_cast<void**>(page.Put()));
    VARIANT_BOOL dirty = VARIANT_FALSE;
    if (page) page->get_Dirty(&dirty);
    return dirty == VARIANT_TRUE;
  }

  std::unique_ptr<ComHost> host_ = std::make_unique<ComHost>();
  ComPtr<IDispatch> page_;
};

TEST_F(OptionsPageTest, PropertyPageMembersAreWhereOutlooksTypeLibraryPutsThem) {
  ComPtr<OutlookPropertyPage> page;
  ASSERT_EQ(page_->QueryInterface(kIidPropertyPage, reinterpret_cast<void**>(page.Put())), S_OK);
  const struct {
    const wchar_t* name;
    DISPID id;
  } kDeclared[] = {{L"GetPageInfo", declared::property_page::kGetPageInfo},
                   {L"Dirty", declared::property_page::kDirty},
                   {L"Apply", declared::property_page::kApply}};
  for (const auto& member : kDeclared) {
    DISPID id = DISPID_UNKNOWN;
    LPOLESTR name = const_cast<LPOLESTR>(member.name);
    EXPECT_EQ(page_->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id), S_OK);
    EXPECT_EQ(id, member.id) << Narrow(member.name);
  }
  BSTR help_file = nullptr;
  LONG help_context = -1;
  EXPECT_EQ(page->GetPageInfo(&help_file, &help_context), S_OK);
  EXPECT_EQ(help_context, 0);
  SysFreeString(help_file);
  EXPECT_FALSE(Dirty());
  EXPECT_EQ(page->Apply(), S_OK) << "a page never shown has nothing to apply";
  EXPECT_EQ(Dword(HKEY_CURRENT_USER, kProduct, "RunJobsAsync"), std::nullopt);

  // Late-bound, as a script would: Dirty is a property get.
  DISPPARAMS none{};
  VARIANT result;
  VariantInit(&result);
  EXPECT_EQ(page_->Invoke(declared::property_page::kDirty, IID_NULL, LOCALE_USER_DEFAULT,
                          DISPATCH_PROPERTYGET, &none, &result, nullptr, nullptr),
            S_OK);
  EXPECT_EQ(result.vt, VT_BOOL);
  EXPECT_EQ(result.boolVal, VARIANT_FALSE);
}

// The add-in's error log records the control's file version: the file carries one.
TEST_F(OptionsPageTest, TheRegisteredFileCarriesTheVersionTheErrorLogRecords) {
  wchar_t path[MAX_PATH] = {};
  DWORD size = sizeof(path);
  ASSERT_EQ(RegGetValueW(HKEY_CLASSES_ROOT,
                         L"CLSID\\{8126899C-11C0-49FE-BA19-AA4AAB4DAE1B}\\InprocServer32", nullptr,
                         RRF_RT_REG_SZ, nullptr, path, &size),
            ERROR_SUCCESS);
  DWORD ignored = 0;
  DWORD bytes = GetFileVersionInfoSizeW(path, &ignored);
  ASSERT_GT(bytes, 0u) << Narrow(path) << " has no version resource";
  std::vector<char> info(bytes);
  ASSERT_TRUE(GetFileVersionInfoW(path, 0, bytes, info.data()));
  VS_FIXEDFILEINFO* fixed = nullptr;
  UINT length = 0;
  ASSERT_TRUE(VerQueryValueW(info.data(), L"\\", reinterpret_cast<void**>(&fixed), &length));
  EXPECT_EQ(HIWORD(fixed->dwFileVersionMS), 3u) << "Zintra 3.0";
  wchar_t* name = nullptr;
  ASSERT_TRUE(VerQueryValueW(info.data(), L"\\StringFileInfo\\040904b0\\OriginalFilename",
                             reinterpret_cast<void**>(&name), &length));
  EXPECT_EQ(Narrow(name), "ZintraControls.ocx");
}

class OptionsPageOnDesktop : public OptionsPageTest {
 protected:
  void SetUp() override {
    HWND probe =
        CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    if (probe == nullptr) GTEST_SKIP() << "the page's windows need a display";
    DestroyWindow(probe);
    OptionsPageTest::SetUp();
  }
  void Open() {
    dialog_ = std::make_unique<PageContainer>(host_->Session());
    ASSERT_EQ(dialog_->Host(page_), S_OK);
  }
  void TearDown() override {
    dialog_.reset();
    OptionsPageTest::TearDown();
  }

  std::unique_ptr<PageContainer> dialog_;
};

TEST_F(OptionsPageOnDesktop, AConfiguredFolderSetAndEditedValuesAreSavedOnApply) {
  Open();
  PageContainer& d = *dialog_;
  EXPECT_EQ(d.StatusChanges(), 0);
  d.Click(d.Named("Add"));
  EXPECT_TRUE(Dirty());
  EXPECT_EQ(d.StatusChanges(), 1) << "the site hears of the first edit";
  ASSERT_TRUE(d.Choose(d.After("Contact folder:"), "\\Clients"));
  ASSERT_TRUE(d.Choose(d.After("Journal folder:"), "\\Clients Journal"));
  d.Click(d.Named("Leave a copy in the creator's personal folder"));
  d.ShowTab(3);
  d.Type(d.After("Work timer interval (ms):"), "25");
  d.Click(d.Named("Run work in the background"));
  d.Click(d.Named("Show the Zintra toolbar"));
  EXPECT_EQ(d.StatusChanges(), 1) << "once dirty, the site is not told again";
  if (const char* snapshot = getenv("ZINTRA_PAGE_SNAPSHOT")) {
    d.ShowTab(0);
    EXPECT_TRUE(d.Snapshot(snapshot));
  }

  ASSERT_EQ(Apply(), S_OK);
  EXPECT_FALSE(Dirty());
  auto& profile = host_->profile();
  const std::string sets = std::string(kProduct) + "\\Foldersets";
  EXPECT_EQ(Dword(HKEY_CURRENT_USER, sets, "Count"), 1u);
  EXPECT_EQ(Text(HKEY_CURRENT_USER, sets + "\\Contact\\EntryID", "1"),
            profile.EntryIdOf(*host_->clients()));
  EXPECT_EQ(Text(HKEY_CURRENT_USER, sets + "\\Contact\\StoreID", "1"),
            profile.StoreIdOf(*host_->clients()->store));
  EXPECT_EQ(Text(HKEY_CURRENT_USER, sets + "\\Journal\\EntryID", "1"),
            profile.EntryIdOf(*host_->journal()));
  EXPECT_EQ(Dword(HKEY_CURRENT_USER, sets + "\\Flags", "1"), 2u);
  EXPECT_EQ(Dword(HKEY_CURRENT_USER, kProduct, "QueuedWorkTimeInterval"), 25u);
  EXPECT_EQ(Dword(HKEY_CURRENT_USER, kProduct, "RunJobsAsync"), 0u);
  EXPECT_EQ(Dword(HKEY_CURRENT_USER, kProduct, "ShowZintra2Buttons"), 1u);
  // Values left at their defaults are not stored.
  EXPECT_EQ(Dword(HKEY_CURRENT_USER, kProduct, "QueuedWorkTimechunk"), std::nullopt);
  EXPECT_EQ(Text(HKEY_CURRENT_USER, sets + "\\Email\\EntryID", "1").value_or(""), "");
}

TEST_F(OptionsPageOnDesktop, MonitoredFoldersAreSavedWithTheItemTypesTheyLog) {
  Open();
  PageContainer& d = *dialog_;
  d.ShowTab(1);
  ASSERT_TRUE(d.Choose(d.After("Method:"), "Monitor only these folders..."));
  ASSERT_TRUE(d.Choose(d.After("Monitored folders:", 2), "\\Inbox"));
  d.Click(d.After("Monitored folders:", 3));  // its Add
  d.Select(d.After("Item types logged in this folder:"), {"Mail Items", "Report Items"});
  d.Click(d.Named("Treat items in the Inbox as outgoing too"));
  ASSERT_EQ(Apply(), S_OK);

  const std::string monitoring = std::string(kProduct) + "\\Monitoring";
  EXPECT_EQ(Dword(HKEY_CURRENT_USER, monitoring, "MonitoringMethod"), 3u);
  EXPECT_EQ(Dword(HKEY_CURRENT_USER, monitoring + "\\Folders", "FolderCount"), 1u);
  EXPECT_EQ(Text(HKEY_CURRENT_USER, monitoring + "\\Folders\\EntryID", "1"),
            host_->profile().EntryIdOf(*host_->profile().DefaultFolder(kOlFolderInbox)));
  EXPECT_EQ(Dword(HKEY_CURRENT_USER, monitoring + "\\Folders\\Flags", "1"), 64u | 2048u);
  EXPECT_EQ(Dword(HKEY_CURRENT_USER, kProduct, "InboxIsOutgoingToo"), 1u);

  // A monitored folder that logs nothing is refused.
  d.Select(d.After("Item types logged in this folder:"), {});
  MessageBoxAnswerer answer(IDOK);
  EXPECT_EQ(Apply(), E_FAIL);
  ASSERT_EQ(answer.Texts().size(), 1u);
  EXPECT_EQ(answer.Texts()[0],
            "Monitored folder '\\\\Mailbox - Jane Doe\\Inbox' logs no item type.");
}

TEST_F(OptionsPageOnDesktop, BadInputIsNamedInAMessageAndNothingIsSaved) {
  Open();
  PageContainer& d = *dialog_;
  d.ShowTab(3);
  const struct {
    const char* label;
    const char* typed;
    const char* message;
  } kCases[] = {
      {"Work timer interval (ms):", "0",
       "Work timer interval (ms) must be a whole number from 1 to 10000."},
      {"Work time per tick (ms):", "12x",
       "Work time per tick (ms) must be a whole number from 1 to 10000."},
      {"Records read into the cache at a time:", "20000", "Value must be between 1 and 10,000"},
      {"Log folder:", "C:\\no\\such\\folder",
       "The log folder 'C:\\no\\such\\folder' does not exist."},
  };
  for (const auto& c : kCases) {
    HWND edit = d.After(c.label);
    ASSERT_NE(edit, nullptr) << c.label;
    std::string before = PageContainer::TextOf(edit);
    d.Type(edit, c.typed);
    MessageBoxAnswerer answer(IDOK);
    EXPECT_EQ(Apply(), E_FAIL) << c.label;
    ASSERT_EQ(answer.Texts().size(), 1u) << c.label;
    EXPECT_EQ(answer.Texts()[0], c.message);
    EXPECT_TRUE(Dirty());
    d.Type(edit, before);
  }
  HKEY key = nullptr;
  EXPECT_NE(RegOpenKeyExA(HKEY_CURRENT_USER, kProduct, 0, KEY_READ, &key), ERROR_SUCCESS)
      << "nothing was saved";
  if (key) RegCloseKey(key);

  // A folder set needs its contact folder.
  d.ShowTab(0);
  d.Click(d.Named("Add"));
  MessageBoxAnswerer answer(IDOK);
  EXPECT_EQ(Apply(), E_FAIL);
  ASSERT_EQ(answer.Texts().size(), 1u);
  EXPECT_EQ(answer.Texts()[0], "Folder set 1 has no contact folder.");
}

TEST_F(OptionsPageOnDesktop, ACacheChunkAbove100IsSavedOnlyWhenTheUserAgrees) {
  Open();
  PageContainer& d = *dialog_;
  d.ShowTab(3);
  d.Type(d.After("Records read into the cache at a time:"), "500");
  {
    MessageBoxAnswerer answer(IDCANCEL);
    EXPECT_EQ(Apply(), E_FAIL);
    ASSERT_EQ(answer.Texts().size(), 1u);
    EXPECT_EQ(answer.Texts()[0].rfind("It is recommended you do not download greater than 100", 0),
              0u);
    EXPECT_EQ(Dword(HKEY_CURRENT_USER, std::string(kProduct) + "\\Foldersets", "GetRowChunkSize"),
              std::nullopt);
  }
  MessageBoxAnswerer answer(IDOK);
  EXPECT_EQ(Apply(), S_OK);
  EXPECT_EQ(Dword(HKEY_CURRENT_USER, std::string(kProduct) + "\\Foldersets", "GetRowChunkSize"),
            500u);
}

TEST_F(OptionsPageOnDesktop, ValuesTheEnterpriseFileFixesAreDisabledAndStayAsTheFileSays) {
  char temp[MAX_PATH] = {};
  GetTempPathA(MAX_PATH, temp);
  const std::string file = std::string(temp) + "zintra-enterprise.txt";
  {
    std::ofstream out(file, std::ios::binary);
    out << "; Zintra3.0.x Settings File\r\n"
        << "<Software\\Brellow\\Zintra\\RunJobsAsync>0</"
           "Software\\Brellow\\Zintra\\RunJobsAsync>\r\n";
  }
  HKEY policy = nullptr;
  ASSERT_EQ(RegCreateKeyExA(HKEY_LOCAL_MACHINE, kPolicy, 0, nullptr, 0, KEY_WRITE, nullptr, &policy,
                            nullptr),
            ERROR_SUCCESS);
  RegSetValueExA(policy, "EnterpriseSettingsPath", 0, REG_SZ,
                 reinterpret_cast<const BYTE*>(file.c_str()), static_cast<DWORD>(file.size() + 1));
  DWORD forbid = 0;
  RegSetValueExA(policy, "AllowLocalOverride", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&forbid),
                 sizeof(forbid));
  RegCloseKey(policy);

  Open();
  PageContainer& d = *dialog_;
  d.ShowTab(3);
  HWND background = d.Named("Run work in the background");
  ASSERT_NE(background, nullptr);
  EXPECT_FALSE(IsWindowEnabled(background));
  EXPECT_EQ(SendMessageW(background, BM_GETCHECK, 0, 0), BST_UNCHECKED) << "as the file says";
  EXPECT_FALSE(IsWindowEnabled(d.Named("Do not use the enterprise settings")))
      << "the policy forbids opting out";
  EXPECT_FALSE(IsWindowEnabled(d.After("Work timer interval (ms):")));
  EXPECT_TRUE(IsWindowEnabled(d.After("Largest error log (KB):"))) << "kept in the registry";
  d.ShowTab(0);
  EXPECT_FALSE(IsWindowEnabled(d.Named("Add")));

  d.ShowTab(3);
  d.Type(d.After("Largest error log (KB):"), "4096");
  EXPECT_EQ(Apply(), S_OK);
  EXPECT_EQ(Dword(HKEY_CURRENT_USER, std::string(kProduct) + "\\Logging", "MaxLogSizeKB"), 4096u);
  EXPECT_EQ(Dword(HKEY_CURRENT_USER, kProduct, "RunJobsAsync"), std::nullopt)
      << "nothing the file holds goes to the registry";

  dialog_.reset();
  RegDeleteTreeA(HKEY_LOCAL_MACHINE, "Software\\Policies\\Brellow");
  DeleteFileA(file.c_str());
}

}  // namespace
}  // namespace zintra::win32
