#include "win32/sim_server/served_classes.h"

#include "src/core/text.h"
#include "src/core/z_error.h"
#include "src/outlook/library_factory.h"
#include "win32/com/com_ptr.h"
#include "win32/com/unicode.h"
#include "win32/com/unique_handles.h"
#include "win32/sim_server/serve.h"

namespace zintra::win32 {
namespace {

// COM objects are destroyed through Release, never through a base pointer.
#ifdef __GNUC__
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class ClassObject final : public IClassFactory {
 public:
  ClassObject(sim::SimClassRegistry& registry, std::string prog_id,
              std::shared_ptr<int64_t> created)
      : registry_(registry), prog_id_(std::move(prog_id)), created_(std::move(created)) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    if (!out) return E_POINTER;
    if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IClassFactory)) {
      *out = static_cast<IClassFactory*>(this);
      AddRef();
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++refs_; }
  STDMETHODIMP_(ULONG) Release() override {
    ULONG left = --refs_;
    if (left == 0) delete this;
    return left;
  }

  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** out) override {
    if (!out) return E_POINTER;
    *out = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    try {
      ComPtr<IDispatch> object = Serve(registry_.CreateObject(prog_id_));
      if (!object) return CLASS_E_CLASSNOTAVAILABLE;
      HRESULT hr = object->QueryInterface(iid, out);
      if (SUCCEEDED(hr)) ++*created_;
      return hr;
    } catch (const ZError& e) {
      return e.Number() < 0 ? static_cast<HRESULT>(e.Number()) : CLASS_E_CLASSNOTAVAILABLE;
    } catch (...) {
      return E_UNEXPECTED;
    }
  }
  STDMETHODIMP LockServer(BOOL) override { return S_OK; }

 private:
  ~ClassObject() = default;
  ULONG refs_ = 1;
  sim::SimClassRegistry& registry_;
  std::string prog_id_;
  std::shared_ptr<int64_t> created_;
};
#ifdef __GNUC__
#pragma GCC diagnostic pop
#endif

std::wstring GuidText(const CLSID& clsid) {
  wchar_t text[40] = {};
  StringFromGUID2(clsid, text, 40);
  return text;
}

// Writes `subkey`'s default value (or the named one) under HKLM\Software\Classes;
// false when the key was already there (it is left as it is) or cannot be written.
bool WriteClassKey(const std::wstring& subkey, const wchar_t* name, const std::wstring& value,
                   bool* existed) {
  const std::wstring path = L"Software\\Classes\\" + subkey;
  UniqueHKey key;
  DWORD disposition = 0;
  if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0, KEY_READ | KEY_WRITE,
                      nullptr, key.put(), &disposition) != ERROR_SUCCESS) {
    return false;
  }
  *existed = disposition == REG_OPENED_EXISTING_KEY;
  if (*existed) {
    // A key that already names our own class was left by a run that ended without
    // cleaning up: it is ours to rewrite and remove.
    wchar_t current[128] = {};
    DWORD size = sizeof(current) - sizeof(wchar_t);
    DWORD type = 0;
    if (RegQueryValueExW(key.get(), name, nullptr, &type, reinterpret_cast<BYTE*>(current),
                         &size) == ERROR_SUCCESS &&
        type == REG_SZ && value == current) {
      *existed = false;
    }
  }
  LONG status = ERROR_SUCCESS;
  if (!*existed) {
    status =
        RegSetValueExW(key.get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                       static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
  }
  return status == ERROR_SUCCESS;
}

void RemoveClassKey(const std::wstring& subkey) {
  const std::wstring path = L"Software\\Classes\\" + subkey;
  RegDeleteTreeW(HKEY_LOCAL_MACHINE, path.c_str());
}

}  // namespace

std::vector<std::string> ServedClasses::LibraryProgIds() {
  std::vector<std::string> ids;
  for (int32_t kind = 1; kind <= 17; ++kind) {
    ids.push_back(std::string(kLibraryProgIdPrefix) + LibraryClassName(kind));
  }
  return ids;
}

CLSID ServedClasses::ClassIdOf(const std::string& prog_id) {
  // FNV-1a over the ProgID without regard to case: the same ProgID, the same class.
  uint64_t hash = 1469598103934665603ull;
  for (char c : text::LCase(prog_id)) {
    hash = (hash ^ static_cast<uint8_t>(c)) * 1099511628211ull;
  }
  CLSID clsid{0x5A1E0000, 0x7A3B, 0x4C2D, {}};
  for (int i = 0; i < 8; ++i) clsid.Data4[i] = static_cast<uint8_t>(hash >> (8 * i));
  return clsid;
}

ServedClasses::ServedClasses(sim::SimClassRegistry& registry,
                             const std::vector<std::string>& prog_ids) {
  for (const std::string& prog_id : prog_ids) {
    Entry entry{prog_id, ClassIdOf(prog_id)};
    auto* factory = new ClassObject(registry, prog_id, created_);
    HRESULT hr = CoRegisterClassObject(entry.clsid, factory, CLSCTX_INPROC_SERVER,
                                       REGCLS_MULTIPLEUSE, &entry.cookie);
    factory->Release();  // COM holds it while registered
    if (FAILED(hr)) {
      failures_.push_back("CoRegisterClassObject " + prog_id + " failed");
      entry.cookie = 0;
    }
    const std::wstring wide_id = Widen(prog_id);
    const std::wstring guid = GuidText(entry.clsid);
    bool existed = false;
    if (WriteClassKey(wide_id + L"\\CLSID", nullptr, guid, &existed)) {
      entry.wrote_prog_id_key = !existed;
    } else if (!existed) {
      failures_.push_back("registry key for " + prog_id + " not written");
    }
    if (WriteClassKey(L"CLSID\\" + guid + L"\\ProgID", nullptr, wide_id, &existed)) {
      entry.wrote_clsid_key = !existed;
    }
    entries_.push_back(std::move(entry));
  }
}

ServedClasses::~ServedClasses() {
  for (const Entry& entry : entries_) {
    if (entry.cookie) CoRevokeClassObject(entry.cookie);
    if (entry.wrote_prog_id_key) RemoveClassKey(Widen(entry.prog_id));
    if (entry.wrote_clsid_key) RemoveClassKey(L"CLSID\\" + GuidText(entry.clsid));
  }
}

}  // namespace zintra::win32
