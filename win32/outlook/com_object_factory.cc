#include "win32/outlook/com_object_factory.h"

#include <algorithm>

#include "win32/com/com_error.h"
#include "win32/com/unicode.h"
#include "win32/outlook/com_adapter.h"
#include "win32/outlook/com_mapi_table.h"
#include "win32/outlook/com_mapi_utils.h"
#include "win32/outlook/com_rdo_session.h"
#include "win32/outlook/com_safe_item.h"
#include "win32/outlook/com_toolbar_library.h"
#include "win32/outlook/com_word.h"
#include "win32/outlook/wrap.h"

namespace zintra::win32 {
namespace {

constexpr char kLibraryPrefix[] = "tovuredemption.";

std::string Lower(std::string s) {
  std::transform(s.begin(), s.end(), s.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return s;
}

// The library's class name in its own spelling, for the safe item's TypeName.
std::string ClassPart(const std::string& prog_id) {
  return prog_id.substr(sizeof(kLibraryPrefix) - 1);
}

std::shared_ptr<AutomationObject> WrapLibrary(const std::string& prog_id,
                                              const ComPtr<IDispatch>& object) {
  std::string name = Lower(ClassPart(prog_id));
  if (name == "tovumapiutils") return std::make_shared<ComMapiUtils>(object);
  if (name == "tovumapitable") return std::make_shared<ComMapiTable>(object);
  if (name == "tovurdosession") return Wrap<RdoSession>(object);
  if (name == "tovurdofolder" || name == "tovumapifolder") return Wrap<RdoFolder>(object);
  if (name == "tovuaddresslists") return Wrap<AddressLists>(object);
  if (name == "tovucurrentuser") return Wrap<AddressEntry>(object);
  if (name == "tovuinspector") return std::make_shared<ComSafeInspector>(object);
  static const char* const kSafeItems[] = {
      "tovuappointmentitem", "tovucontactitem", "tovudistlist", "tovujournalitem", "tovumailitem",
      "tovumeetingitem",     "tovupostitem",    "tovutaskitem", "tovureportitem"};
  for (const char* safe : kSafeItems) {
    if (name == safe) return std::make_shared<ComSafeItem>(object, ClassPart(prog_id));
  }
  return std::make_shared<ComObject>(object);
}

}  // namespace

void ComObjectFactory::RegisterNative(const std::string& prog_id, Constructor construct) {
  natives_[Lower(prog_id)] = std::move(construct);
}

std::shared_ptr<AutomationObject> ComObjectFactory::CreateObject(const std::string& prog_id) {
  if (auto it = natives_.find(Lower(prog_id)); it != natives_.end()) {
    std::shared_ptr<AutomationObject> object = it->second();
    if (!object) {
      throw ZError(kErrCannotCreateObject, ZError::StandardDescription(kErrCannotCreateObject),
                   prog_id);
    }
    return object;
  }
  return WrapByProgId(prog_id, CreateDispatch(prog_id));
}

ComPtr<IDispatch> ComObjectFactory::CreateDispatch(const std::string& prog_id) {
  std::wstring wide = Widen(prog_id);
  CLSID clsid{};
  HRESULT hr = CLSIDFromProgID(wide.c_str(), &clsid);
  if (FAILED(hr)) ThrowComError(hr, nullptr, "CreateObject(" + prog_id + ")");
  ComPtr<IDispatch> object;
  hr = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDispatch,
                        reinterpret_cast<void**>(object.Put()));
  if (FAILED(hr)) ThrowComError(hr, nullptr, "CreateObject(" + prog_id + ")");
  return object;
}

std::shared_ptr<AutomationObject> ComObjectFactory::WrapByProgId(const std::string& prog_id,
                                                                 const ComPtr<IDispatch>& object) {
  std::string lower = Lower(prog_id);
  if (lower.rfind(kLibraryPrefix, 0) == 0) return WrapLibrary(prog_id, object);
  if (lower == "outlook.application" || lower.rfind("outlook.application.", 0) == 0) {
    return Wrap<Application>(object);
  }
  if (lower == "word.application" || lower.rfind("word.application.", 0) == 0) {
    return std::make_shared<ComWordApplication>(object);
  }
  if (lower == Lower(kToolbarHelperProgId)) return std::make_shared<ComToolbarHelper>(object);
  return std::make_shared<ComObject>(object);
}

}  // namespace zintra::win32
