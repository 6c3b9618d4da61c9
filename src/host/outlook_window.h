// Outlook's windows: explorers (folder views) and inspectors (item windows). Both
// carry command bars and raise Activate, Deactivate and Close on Outlook's thread.
// A member of a closed window throws kMapiObjectDeleted (Outlook's "The object has
// been deleted"). Windows are listed by Application::Explorers / Inspectors while open.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "src/core/event.h"
#include "src/host/automation_object.h"
#include "src/host/command_bars.h"
#include "src/host/mapi_object.h"

namespace zintra {

class Folder;
class Item;

class OutlookWindow : public AutomationObject {
 public:
  virtual std::string Caption() const = 0;
  virtual std::shared_ptr<zintra::CommandBars> CommandBars() = 0;
  virtual void Activate() = 0;
  virtual void Close(int32_t save_mode = 1) = 0;

  Event<> ActivateEvent;  // the Activate event (Activate is the method)
  Event<> Deactivate;
  Event<> CloseEvent;  // the Close event (Close is the method)
};

class Selection : public AutomationObject {
 public:
  virtual int32_t Count() const = 0;
  virtual std::shared_ptr<zintra::Item> Item(int32_t index) = 0;
};

class Explorer : public OutlookWindow {
 public:
  virtual std::shared_ptr<zintra::Selection> Selection() = 0;
  virtual std::shared_ptr<Folder> CurrentFolder() = 0;

  Event<> SelectionChange;
};

class Inspector : public OutlookWindow {
 public:
  virtual std::shared_ptr<Item> CurrentItem() = 0;
  // The native window handle of the inspector's window (a note's own window for a
  // note); 0 when the window has none yet.
  virtual int32_t Hwnd() = 0;
};

class Explorers : public AutomationObject {
 public:
  virtual int32_t Count() const = 0;
  virtual std::shared_ptr<Explorer> Item(int32_t index) = 0;

  Event<std::shared_ptr<Explorer>> NewExplorer;
};

class Inspectors : public AutomationObject {
 public:
  virtual int32_t Count() const = 0;
  virtual std::shared_ptr<Inspector> Item(int32_t index) = 0;

  Event<std::shared_ptr<Inspector>> NewInspector;
};

}  // namespace zintra
