// SimComAddIn: the add-in instance Outlook's loader passes at connection, under the
// ProgID the add-in was registered with. Connect is true while the add-in is loaded.
#pragma once

#include <string>

#include "src/host/idt_extensibility2.h"

namespace zintra::sim {

class SimComAddIn : public ComAddIn {
 public:
  explicit SimComAddIn(std::string prog_id) : prog_id_(std::move(prog_id)) {}
  std::string TypeName() const override { return "COMAddIn"; }
  std::string ProgId() const override { return prog_id_; }
  std::string Description() const override { return "Zintra 3.0"; }
  bool Connect() const override { return connected; }
  bool connected = false;

 private:
  std::string prog_id_;
};

}  // namespace zintra::sim
