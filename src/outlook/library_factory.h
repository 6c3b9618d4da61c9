// LibraryFactory: the one place where the MAPI library's objects are created, by kind
// number, under the ProgID "TovuRedemption." + the kind's class name, so that the
// prefix and the failure handling are the same for every caller.
//
// When creation fails the failure is logged as an error ("Could not create class: " +
// ProgID) and raised again with the same number and the description string 502
// ("Please reinstall this product.") + CR LF + CR LF + the failure's own description.
// A kind outside 1..17 has an empty class name, so its ProgID is the bare prefix and
// creation fails that way. Borrows the object factory, the error handling and the
// string table, which must outlive it. Called on Outlook's thread only.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "src/core/z_error.h"
#include "src/host/automation_object.h"

namespace zintra {

class ErrorHandling;
class ObjectFactory;
class SafeItem;
class StringTable;

inline constexpr char kLibraryProgIdPrefix[] = "TovuRedemption.";

// Library object kinds.
inline constexpr int32_t kLibAddressLists = 1;
inline constexpr int32_t kLibMapiFolder = 2;
inline constexpr int32_t kLibMapiTable = 3;
inline constexpr int32_t kLibMapiUtils = 4;
inline constexpr int32_t kLibSafeAppointment = 5;
inline constexpr int32_t kLibSafeContact = 6;
inline constexpr int32_t kLibCurrentUser = 7;
inline constexpr int32_t kLibSafeDistList = 8;
inline constexpr int32_t kLibSafeJournal = 9;
inline constexpr int32_t kLibSafeMail = 10;
inline constexpr int32_t kLibSafeMeeting = 11;
inline constexpr int32_t kLibSafePost = 12;
inline constexpr int32_t kLibSafeTask = 13;
inline constexpr int32_t kLibSafeReport = 14;
inline constexpr int32_t kLibSafeInspector = 15;
inline constexpr int32_t kLibRdoSession = 16;
inline constexpr int32_t kLibRdoFolder = 17;

// The class name of a kind ("TovuMAPIUtils"); "" outside 1..17.
std::string LibraryClassName(int32_t kind);
// The safe-item kind for an OlItemType: 0 mail -> 10, 1 -> 5, 2 -> 6, 3 -> 13, 4 -> 9,
// 6 -> 12, 7 -> 8; 0 (no object) for notes (5) and any other number.
int32_t SafeItemKind(int32_t ol_item_type);

class LibraryFactory {
 public:
  LibraryFactory(ObjectFactory& factory, ErrorHandling& errors, const StringTable& strings);

  // The new library object of the kind; throws as described above.
  std::shared_ptr<AutomationObject> CreateLibraryObject(int32_t kind);
  // The same, as the interface the kind implements; an object of another interface
  // throws 13 (type mismatch).
  template <typename T>
  std::shared_ptr<T> Create(int32_t kind) {
    auto object = std::dynamic_pointer_cast<T>(CreateLibraryObject(kind));
    if (!object) throw ZError(kErrTypeMismatch, "Type mismatch");
    return object;
  }
  // A new safe-item wrapper for the OlItemType, or nullptr for notes and types
  // without one (the wrapper is empty: the caller sets its Item).
  std::shared_ptr<SafeItem> CreateSafeItem(int32_t ol_item_type);
  // Any registered class by ProgID, with the same failure handling.
  std::shared_ptr<AutomationObject> CreateObject(const std::string& prog_id);

 private:
  ObjectFactory& factory_;
  ErrorHandling& errors_;
  const StringTable& strings_;
};

}  // namespace zintra
