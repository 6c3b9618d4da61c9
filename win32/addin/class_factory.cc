#include "win32/addin/class_factory.h"

#include "win32/com/com_error.h"

namespace zintra::win32 {

HRESULT ClassFactory::QueryInterface(REFIID iid, void** out) {
  if (!out) return E_POINTER;
  if (iid == IID_IUnknown || iid == IID_IClassFactory) {
    *out = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
  }
  *out = nullptr;
  return E_NOINTERFACE;
}

ULONG ClassFactory::AddRef() { return static_cast<ULONG>(InterlockedIncrement(&refs_)); }

ULONG ClassFactory::Release() {
  LONG left = InterlockedDecrement(&refs_);
  if (left == 0) delete this;
  return static_cast<ULONG>(left);
}

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  if (outer) return CLASS_E_NOAGGREGATION;
  return GuardCall("ClassFactory.CreateInstance", nullptr, [&] { return creator_(iid, out); });
}

HRESULT ClassFactory::LockServer(BOOL lock) {
  DllModule::Instance().Lock(lock != FALSE);
  return S_OK;
}

}  // namespace zintra::win32
