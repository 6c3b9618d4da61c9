// ComAdapter: what every adapter of a host port over an automation object shares — the
// late-bound client, typed reads and writes of one member each, and the conversions of
// port arguments into call arguments.
//
// An adapter holds one reference to its object for its life; it is used on the thread
// the object belongs to (Outlook's). Failures are the server's, as ZError (438 for a
// member the object's kind lacks). The adapter classes derive from their port first and
// from ComAdapter second, so AdapterOf finds the object behind any port pointer.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "src/core/dispatchable.h"
#include "src/core/z_error.h"
#include "src/host/automation_object.h"
#include "src/host/mapi_object.h"
#include "win32/com/dispatch_client.h"

namespace zintra::win32 {

class ComAdapter {
 public:
  explicit ComAdapter(DispatchClient client) : client_(std::move(client)) {}
  virtual ~ComAdapter() = default;

  const DispatchClient& Client() const { return client_; }
  const ComPtr<IDispatch>& Object() const { return client_.Object(); }

 protected:
  std::string Text(std::string_view name) const { return Read(name).ToString(); }
  int32_t Long(std::string_view name) const { return Read(name).ToLong(); }
  bool Bool(std::string_view name) const { return Read(name).ToBool(); }
  // A date member as a serial; Outlook's "None" (1/1/4501) reads as kUnsetDate.
  double Date(std::string_view name) const;
  Value Read(std::string_view name) const { return client_.GetValue(name); }
  void Write(std::string_view name, const Value& value) const { client_.Put(name, Variant(value)); }
  ComPtr<IDispatch> ObjectMember(std::string_view name, std::vector<Variant> args = {}) const {
    return client_.Get(name, std::move(args)).ToObject();
  }

  DispatchClient client_;
};

// The automation object behind a port object of ours; nullptr for anything else.
ComAdapter* AdapterOf(const AutomationObject* object);

// A port object as a call argument: ours as the object it wraps (a MAPI object as
// VT_UNKNOWN), nullptr as Nothing; a port object that is not an automation object
// throws 13 naming `what`.
Variant ObjectArg(const std::shared_ptr<AutomationObject>& object, std::string_view what);

// VB's TypeName of an automation object: its type information's name, else "Object".
std::string TypeNameOf(IDispatch* object);

// The MAPI interface under an Outlook object (MAPIOBJECT): opaque, only handed back.
class ComMapiObject final : public MapiObject {
 public:
  explicit ComMapiObject(ComPtr<IUnknown> object) : object_(std::move(object)) {}
  std::string TypeName() const override { return "Unknown"; }
  const ComPtr<IUnknown>& Object() const { return object_; }

 private:
  ComPtr<IUnknown> object_;
};

// Reads a MAPIOBJECT-like member: nullptr for Nothing.
std::shared_ptr<MapiObject> MapiObjectOf(const Variant& v);

// Any automation object without a port of its own (a class made by ProgID that the
// system only keeps alive or calls by name).
class ComObject final : public AutomationObject, public Dispatchable, public ComAdapter {
 public:
  explicit ComObject(ComPtr<IDispatch> object);
  std::string TypeName() const override { return type_name_; }
  // Calls the member with one argument or none; an object result reads as Empty.
  Value Invoke(std::string_view name, const Value* arg) override;

 private:
  std::string type_name_;
};

// Where a failing event handler is reported (the add-in routes it to its error log;
// by default it goes to the debugger's output). `where` names the event.
using EventErrorReporter = std::function<void(const std::string& where, const ZError& error)>;
void SetEventErrorReporter(EventErrorReporter reporter);
void ReportEventError(const std::string& where, const ZError& error);

}  // namespace zintra::win32
