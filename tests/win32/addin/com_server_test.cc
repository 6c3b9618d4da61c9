// ZintraAddin.Connect as Outlook meets it: activated through COM by its ProgID, asked
// for IDTExtensibility2, called through the vtable and late-bound, released; faults come
// back as HRESULTs and leave the DLL usable and unloadable.
#include <gtest/gtest.h>

#include <string>

#include "tests/win32/addin/addin_dll.h"
#include "tests/win32/addin/failing_dispatch.h"
#include "win32/addin/idt_extensibility2_com.h"
#include "win32/addin/reg_key.h"
#include "win32/com/bstr.h"
#include "win32/com/com_ptr.h"
#include "win32/com/variant.h"

namespace zintra::win32::testing {
namespace {

// Wine 8 resolves classes from HKEY_LOCAL_MACHINE only, so these tests register the
// DLL per machine for their duration.
class ComServerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(dll_.Loaded());
    if (KeyExists(HKEY_LOCAL_MACHINE, L"Software\\Classes\\ZintraAddin.Connect")) {
      GTEST_SKIP() << "the add-in is registered on this machine; these tests would remove it";
    }
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
    com_ = true;
    ASSERT_EQ(dll_.Install(true, L"machine"), S_OK);
    registered_ = true;
  }
  void TearDown() override {
    if (registered_) {
      EXPECT_EQ(dll_.Install(false, L"machine"), S_OK);
    }
    if (com_) CoUninitialize();
  }

  ComPtr<IDTExtensibility2Com> CreateByProgId(const wchar_t* prog_id) {
    CLSID clsid{};
    EXPECT_EQ(CLSIDFromProgID(prog_id, &clsid), S_OK);
    ComPtr<IDTExtensibility2Com> addin;
    EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IDTExtensibility2Com),
                               reinterpret_cast<void**>(addin.Put())),
              S_OK);
    return addin;
  }

  static SAFEARRAY* EmptyCustom() { return SafeArrayCreateVector(VT_VARIANT, 0, 0); }

  AddinDll dll_;
  bool com_ = false;
  bool registered_ = false;
};

TEST_F(ComServerTest, ActivatesByProgIdAndUnloadsOnceReleased) {
  CLSID clsid{};
  ASSERT_EQ(CLSIDFromProgID(L"ZintraAddin.Connect", &clsid), S_OK);
  EXPECT_TRUE(IsEqualCLSID(clsid, kClsidConnect));
  ComPtr<IDTExtensibility2Com> addin = CreateByProgId(L"ZintraAddin.Connect");
  ASSERT_TRUE(addin);
  // The same object through IUnknown and IDispatch.
  ComPtr<IUnknown> unknown = addin.As<IUnknown>();
  ComPtr<IDispatch> dispatch = addin.As<IDispatch>();
  ASSERT_TRUE(dispatch);
  EXPECT_EQ(unknown.Get(), addin.As<IUnknown>().Get());
  EXPECT_FALSE(addin.AsIID(IID_IClassFactory));
  EXPECT_EQ(dll_.CanUnloadNow(), S_FALSE);
  addin.Reset();
  EXPECT_EQ(dll_.CanUnloadNow(), S_FALSE);  // still held through two other pointers
  unknown.Reset();
  dispatch.Reset();
  EXPECT_EQ(dll_.CanUnloadNow(), S_OK);
}

TEST_F(ComServerTest, ClassFactoryLocksTheServerAndRefusesAggregation) {
  ComPtr<IClassFactory> factory;
  ASSERT_EQ(dll_.GetClassObject(kClsidConnect, IID_IClassFactory,
                                reinterpret_cast<void**>(factory.Put())),
            S_OK);
  ComPtr<IUnknown> object;
  EXPECT_EQ(factory->CreateInstance(reinterpret_cast<IUnknown*>(factory.Get()), IID_IUnknown,
                                    reinterpret_cast<void**>(object.Put())),
            CLASS_E_NOAGGREGATION);
  EXPECT_EQ(
      factory->CreateInstance(nullptr, IID_IClassFactory, reinterpret_cast<void**>(object.Put())),
      E_NOINTERFACE);
  EXPECT_EQ(factory->LockServer(TRUE), S_OK);
  factory.Reset();
  EXPECT_EQ(dll_.CanUnloadNow(), S_FALSE);
  ASSERT_EQ(dll_.GetClassObject(kClsidConnect, IID_IClassFactory,
                                reinterpret_cast<void**>(factory.Put())),
            S_OK);
  EXPECT_EQ(factory->LockServer(FALSE), S_OK);
  factory.Reset();
  EXPECT_EQ(dll_.CanUnloadNow(), S_OK);
  ComPtr<IClassFactory> unknown_class;
  EXPECT_EQ(dll_.GetClassObject(IID_IDispatch, IID_IClassFactory,
                                reinterpret_cast<void**>(unknown_class.Put())),
            CLASS_E_CLASSNOTAVAILABLE);
}

TEST_F(ComServerTest, LateBoundNamesAreOfficesDispIds) {
  ComPtr<IDispatch> dispatch = CreateByProgId(L"ZintraAddin.Connect").As<IDispatch>();
  ASSERT_TRUE(dispatch);
  const wchar_t* names[] = {L"OnConnection", L"ondisconnection", L"OnAddInsUpdate",
                            L"ONSTARTUPCOMPLETE", L"OnBeginShutdown"};
  for (DISPID expected = 1; expected <= 5; ++expected) {
    LPOLESTR name = const_cast<LPOLESTR>(names[expected - 1]);
    DISPID id = 0;
    EXPECT_EQ(dispatch->GetIDsOfNames(IID_NULL, &name, 1, 0, &id), S_OK);
    EXPECT_EQ(id, expected);
  }
  LPOLESTR unknown = const_cast<LPOLESTR>(L"Quit");
  DISPID id = 0;
  EXPECT_EQ(dispatch->GetIDsOfNames(IID_NULL, &unknown, 1, 0, &id), DISP_E_UNKNOWNNAME);
  // OnAddInsUpdate(custom) called late-bound, and with a wrong argument count.
  SAFEARRAY* custom = EmptyCustom();
  Variant arg;
  arg.Get()->vt = VT_BYREF | VT_ARRAY | VT_VARIANT;
  arg.Get()->pparray = &custom;
  DISPPARAMS params{arg.Get(), nullptr, 1, 0};
  EXPECT_EQ(dispatch->Invoke(kDispIdOnAddInsUpdate, IID_NULL, 0, DISPATCH_METHOD, &params, nullptr,
                             nullptr, nullptr),
            S_OK);
  DISPPARAMS none{nullptr, nullptr, 0, 0};
  EXPECT_EQ(dispatch->Invoke(kDispIdOnConnection, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr,
                             nullptr, nullptr),
            DISP_E_BADPARAMCOUNT);
  arg.Get()->vt = VT_EMPTY;  // the array is ours to destroy
  SafeArrayDestroy(custom);
}

TEST_F(ComServerTest, FaultsComeBackAsHresultsAndTheDllStaysUsable) {
  SAFEARRAY* custom = EmptyCustom();
  {
    ComPtr<IDTExtensibility2Com> addin = CreateByProgId(L"ZintraAddin.Connect");
    ASSERT_TRUE(addin);
    // No application object at all.
    EXPECT_EQ(addin->OnConnection(nullptr, 0, nullptr, &custom), E_INVALIDARG);
    EXPECT_EQ(addin->OnStartupComplete(&custom), S_OK);
    EXPECT_EQ(addin->OnBeginShutdown(&custom), S_OK);
    EXPECT_EQ(addin->OnDisconnection(0, &custom), S_OK);
  }
  {
    // An application whose every member fails, as a dying Outlook's would: the add-in
    // stays inert, and every call still answers.
    ComPtr<IDTExtensibility2Com> addin = CreateByProgId(L"ZintraAddin.Connect");
    ASSERT_TRUE(addin);
    ComPtr<IDispatch> outlook = FailingDispatch::Create();
    HRESULT connected = addin->OnConnection(outlook.Get(), 0, nullptr, &custom);
    (void)connected;  // logged by the add-in; any HRESULT will do, as long as one comes back
    EXPECT_EQ(addin->OnStartupComplete(&custom), S_OK);
    EXPECT_EQ(addin->OnDisconnection(1, &custom), S_OK);
  }
  EXPECT_EQ(dll_.CanUnloadNow(), S_OK);
  // The DLL still serves new objects.
  EXPECT_TRUE(CreateByProgId(L"ZintraAddin.Connect"));
  SafeArrayDestroy(custom);
}

TEST_F(ComServerTest, LetterHandlerAnswersWithAnErrorWhenNoAddinRuns) {
  CLSID clsid{};
  ASSERT_EQ(CLSIDFromProgID(L"ZintraAddin.WordLetterHandler", &clsid), S_OK);
  ComPtr<IDispatch> handler;
  ASSERT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                             reinterpret_cast<void**>(handler.Put())),
            S_OK);
  LPOLESTR name = const_cast<LPOLESTR>(L"logdocument");
  DISPID id = 0;
  ASSERT_EQ(handler->GetIDsOfNames(IID_NULL, &name, 1, 0, &id), S_OK);
  Variant document(FailingDispatch::Create());
  DISPPARAMS params{document.Get(), nullptr, 1, 0};
  EXCEPINFO info{};
  EXPECT_EQ(handler->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &params, nullptr, &info, nullptr),
            DISP_E_EXCEPTION);
  // The macro is told why, in words.
  EXPECT_FALSE(Bstr::ToUtf8(info.bstrDescription).empty());
  SysFreeString(info.bstrDescription);
  SysFreeString(info.bstrSource);
  SysFreeString(info.bstrHelpFile);
}

}  // namespace
}  // namespace zintra::win32::testing
