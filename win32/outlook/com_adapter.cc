#include "win32/outlook/com_adapter.h"

#include <mutex>

#include "src/core/date.h"
#include "win32/com/bstr.h"
#include "win32/com/com_error.h"

namespace zintra::win32 {
namespace {

struct Reporter {
  std::mutex mutex;
  EventErrorReporter report;
};

Reporter& TheReporter() {
  static Reporter* reporter = new Reporter;  // used until the process ends
  return *reporter;
}

}  // namespace

double ComAdapter::Date(std::string_view name) const {
  static const double kOutlookNone = MakeDate(4501, 1, 1);
  double serial = Read(name).ToDouble();
  return serial >= kOutlookNone ? kUnsetDate : serial;
}

ComAdapter* AdapterOf(const AutomationObject* object) {
  return dynamic_cast<ComAdapter*>(const_cast<AutomationObject*>(object));
}

Variant ObjectArg(const std::shared_ptr<AutomationObject>& object, std::string_view what) {
  if (!object) return Variant(ComPtr<IDispatch>());
  if (ComAdapter* adapter = AdapterOf(object.get())) return Variant(adapter->Object());
  if (auto* mapi = dynamic_cast<ComMapiObject*>(object.get())) {
    Variant v;
    v.Get()->vt = VT_UNKNOWN;
    v.Get()->punkVal = mapi->Object().Get();
    if (v.Get()->punkVal) v.Get()->punkVal->AddRef();
    return v;
  }
  throw ZError(kErrTypeMismatch,
               "Type mismatch: a " + object->TypeName() + " is not an automation object",
               std::string(what));
}

std::string TypeNameOf(IDispatch* object) {
  if (!object) return "Nothing";
  UINT count = 0;
  ComPtr<ITypeInfo> info;
  if (SUCCEEDED(object->GetTypeInfoCount(&count)) && count > 0 &&
      SUCCEEDED(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Put())) && info) {
    Bstr name;
    if (SUCCEEDED(info->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr))) {
      std::string text = name.ToUtf8();
      // Dual interfaces are named "_MailItem"; VB shows the class name.
      if (!text.empty() && text[0] == '_') text.erase(0, 1);
      if (!text.empty()) return text;
    }
  }
  return "Object";
}

std::shared_ptr<MapiObject> MapiObjectOf(const Variant& v) {
  const VARIANT* raw = v.Get();
  if (raw->vt == (VT_BYREF | VT_VARIANT)) raw = raw->pvarVal;
  IUnknown* unknown = nullptr;
  if (raw->vt == VT_UNKNOWN) unknown = raw->punkVal;
  if (raw->vt == VT_DISPATCH) unknown = raw->pdispVal;
  if (!unknown) {
    if (raw->vt == VT_EMPTY || raw->vt == VT_NULL || raw->vt == VT_UNKNOWN ||
        raw->vt == VT_DISPATCH) {
      return nullptr;
    }
    throw ZError(kErrTypeMismatch, "Type mismatch: MAPIOBJECT is not an object");
  }
  return std::make_shared<ComMapiObject>(ComPtr<IUnknown>(unknown));
}

ComObject::ComObject(ComPtr<IDispatch> object)
    : ComAdapter(DispatchClient(object, "")), type_name_(TypeNameOf(object.Get())) {}

Value ComObject::Invoke(std::string_view name, const Value* arg) {
  std::vector<Variant> args;
  if (arg) args.emplace_back(*arg);
  Variant result = client_.Call(name, std::move(args));
  VARTYPE vt = result.Type();
  if (vt == VT_DISPATCH || vt == VT_UNKNOWN) return Value{};
  return result.ToValue();
}

void SetEventErrorReporter(EventErrorReporter reporter) {
  Reporter& r = TheReporter();
  std::lock_guard lock(r.mutex);
  r.report = std::move(reporter);
}

void ReportEventError(const std::string& where, const ZError& error) {
  Reporter& r = TheReporter();
  EventErrorReporter report;
  {
    std::lock_guard lock(r.mutex);
    report = r.report;
  }
  if (report) {
    try {
      report(where, error);
      return;
    } catch (...) {
      // fall through to the debugger's output: a reporter must not stop the event
    }
  }
  std::string line = "Zintra: " + where + ": error " + std::to_string(error.Number()) + " " +
                     error.Description() + "\n";
  OutputDebugStringA(line.c_str());
}

}  // namespace zintra::win32
