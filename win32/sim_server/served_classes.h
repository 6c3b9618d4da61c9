// ServedClasses: classes this process serves to COM activation by ProgID. Each ProgID
// gets a class object (CoRegisterClassObject, in-process, multiple use) whose
// CreateInstance asks the simulated class registry for the object and serves it
// (Serve), so that CreateObject("TovuRedemption.TovuMAPIUtils") from an add-in in this
// process reaches the same Profile as the simulated Outlook. The ProgID -> CLSID keys
// are written under HKLM\Software\Classes (where Wine resolves HKEY_CLASSES_ROOT) and
// removed again on destruction, with the class objects; keys that existed before are
// left alone, unless they name this process's own class (left by a run that crashed). A creation
// that fails in the registry (an unknown ProgID, an injected fault) returns its error as an
// HRESULT: a MAPI code as itself, anything else CLASS_E_CLASSNOTAVAILABLE. Outlook's thread only.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "sim/mapi/sim_class_registry.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

class ServedClasses {
 public:
  // Registers `prog_ids`, created through `registry` (which must outlive this).
  ServedClasses(sim::SimClassRegistry& registry, const std::vector<std::string>& prog_ids);
  ~ServedClasses();
  ServedClasses(const ServedClasses&) = delete;
  ServedClasses& operator=(const ServedClasses&) = delete;

  // The MAPI library's seventeen ProgIDs ("TovuRedemption." + class name).
  static std::vector<std::string> LibraryProgIds();
  // The class identifier this process serves a ProgID under (stable per ProgID).
  static CLSID ClassIdOf(const std::string& prog_id);

  // Whether every class object and key was registered.
  bool Ok() const { return failures_.empty(); }
  // What failed to register, one line each.
  const std::vector<std::string>& Failures() const { return failures_; }
  // Objects created through the class objects so far.
  int64_t Created() const { return *created_; }

 private:
  struct Entry {
    std::string prog_id;
    CLSID clsid;
    DWORD cookie = 0;
    bool wrote_prog_id_key = false;
    bool wrote_clsid_key = false;
  };
  std::vector<Entry> entries_;
  std::vector<std::string> failures_;
  std::shared_ptr<int64_t> created_ = std::make_shared<int64_t>(0);
};

}  // namespace zintra::win32
