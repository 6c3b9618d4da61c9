// MapiUtils (library kind 4): property access on MAPI objects handed out by Outlook
// (Item::MAPIOBJECT, Folder::MAPIOBJECT) or by the library.
//
// Named properties: GetIDsFromNames maps a property-set GUID ("{...}") and a name
// (a text, or a numeric id given as a number) to a property tag whose type part is 0
// (the caller ORs in the type). The mapping belongs to the object's store: the same
// name gives the same tag throughout a store and may give another tag in another
// store. With create False an unknown name gives 0.
//
// HrGetOneProp returns Empty when the object lacks the property (or the tag is 0);
// HrSetOneProp writes, and stores the object when save is True (an item's ItemChange is
// then raised inside the call). A foreign or stale object throws kMapiInvalidParameter
// or kMapiObjectDeleted; injected failures throw their number.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "src/core/event.h"
#include "src/core/value.h"
#include "src/host/automation_object.h"
#include "src/host/mapi_object.h"

namespace zintra {

class MapiUtils : public AutomationObject {
 public:
  virtual void SetMAPIOBJECT(const std::shared_ptr<MapiObject>& session) = 0;
  virtual int32_t GetIDsFromNames(const std::shared_ptr<MapiObject>& object,
                                  const std::string& guid, const Value& name, bool create) = 0;
  virtual Value HrGetOneProp(const std::shared_ptr<MapiObject>& object, int32_t prop_tag) = 0;
  virtual void HrSetOneProp(const std::shared_ptr<MapiObject>& object, int32_t prop_tag,
                            const Value& value, bool save) = 0;
  virtual void HrDeleteOneProp(const std::shared_ptr<MapiObject>& object, int32_t prop_tag,
                               bool save) = 0;
  // True when both hexadecimal entry identifiers name the same object.
  virtual bool CompareIDs(const std::string& entry_id1, const std::string& entry_id2) = 0;
  virtual void Cleanup() = 0;

  // New mail arrived in a store; the argument is the hexadecimal entry identifier.
  Event<std::string> NewMail;
};

}  // namespace zintra
