// ClassFactory: the IClassFactory that DllGetClassObject hands out for each of the
// DLL's classes. CreateInstance builds a new object with the class's creator and asks
// it for the requested interface; aggregation is refused (CLASS_E_NOAGGREGATION).
// LockServer counts in DllModule. Every method runs through GuardCall.
#pragma once

#include "win32/addin/dll_module.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

// Creates one object and answers QueryInterface(iid, out) on it; the object's
// reference is the one handed out (or released when the interface is missing).
using ObjectCreator = HRESULT (*)(REFIID iid, void** out);

// COM interfaces have no virtual destructor; objects delete themselves in Release.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class ClassFactory final : public IClassFactory {
 public:
  explicit ClassFactory(ObjectCreator creator) : creator_(creator) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** out) override;
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

 private:
  ~ClassFactory() = default;

  ObjectCreator creator_;
  LONG refs_ = 1;
  ModuleObjectCount count_;
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace zintra::win32
