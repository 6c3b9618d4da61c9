// DeclaredButton: a button as the toolbar library's events carry it when each window's
// buttons have a tag of their own: every member goes to the button in the window, but
// Tag reads the tag the add-in declared. Setting the tag sets the window's button.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "src/host/command_bars.h"

namespace zintra::hosts {

class DeclaredButton final : public CommandBarControl {
 public:
  DeclaredButton(std::shared_ptr<CommandBarControl> button, std::string declared_tag)
      : button_(std::move(button)), declared_tag_(std::move(declared_tag)) {}

  // The button in the window.
  const std::shared_ptr<CommandBarControl>& Button() const { return button_; }

  std::string TypeName() const override { return button_->TypeName(); }
  int32_t Id() const override { return button_->Id(); }
  int32_t Type() const override { return button_->Type(); }
  std::string Tag() const override { return declared_tag_; }
  void SetTag(const std::string& tag) override { button_->SetTag(tag); }
  std::string Caption() const override { return button_->Caption(); }
  void SetCaption(const std::string& caption) override { button_->SetCaption(caption); }
  bool Visible() const override { return button_->Visible(); }
  void SetVisible(bool visible) override { button_->SetVisible(visible); }
  int32_t Style() const override { return button_->Style(); }
  void SetStyle(int32_t style) override { button_->SetStyle(style); }
  bool Enabled() const override { return button_->Enabled(); }
  void SetEnabled(bool enabled) override { button_->SetEnabled(enabled); }
  void Execute() override { button_->Execute(); }
  void Delete() override { button_->Delete(); }
  std::shared_ptr<CommandBar> Parent() override { return button_->Parent(); }

 private:
  std::shared_ptr<CommandBarControl> button_;
  std::string declared_tag_;
};

}  // namespace zintra::hosts
