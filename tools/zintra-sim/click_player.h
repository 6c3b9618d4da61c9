// ClickPlayer: a `click` step. The user selects the step's items in an explorer showing
// the first one's folder (or opens the one item's window) and presses the named button
// on the Zintra toolbar; then answers what the button shows, as the step says:
//   - the question asked before linking many items ("confirm", OK when not given);
//   - the item window a phone call, note, e-mail or appointment opens: "fill" types
//     fields into it, "then" leaves it ("save", "send" for a mail, "discard",
//     "keep-open"; by default a mail is sent and anything else saved);
//   - Outlook's link dialog (file link): "link_items" are the items the user picks;
//     each is linked to the selected contact and saved;
//   - the Word letter: "letter" is typed into it, then ("file", the default) the
//     template's macro files it in Outlook or ("discard") it is closed unsaved.
// A window without the Zintra button (no toolbar, or an item window without buttons)
// makes the click do nothing; the note says so. Items the step names that are gone,
// and a click while Outlook is not running, throw InputError naming the step.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "tools/zintra-sim/scenario.h"
#include "tools/zintra-sim/world.h"

namespace zintra {
class Item;
}

namespace zintra::simtool {

// Sets an item's fields as the user types them: subject, body, categories,
// sensitivity, else a user property (true/false as yes/no). A bad sensitivity throws
// InputError naming `file`, the step's line and `field` (the step's "set" or "fill").
void SetItemFields(Item& item, const std::map<std::string, std::string>& fields,
                   const std::string& file, const StepSpec& step, const std::string& field);

class ClickPlayer {
 public:
  using Note = std::function<void(const std::string&)>;
  ClickPlayer(World& world, Note note) : w_(world), note_(std::move(note)) {}
  void Play(const StepSpec& step);

 private:
  std::shared_ptr<Item> ItemById(const std::string& id, const StepSpec& step);
  void AnswerItemWindow(const StepSpec& step, size_t inspectors_before);
  void AnswerLinkDialog(const StepSpec& step, const std::shared_ptr<Item>& contact);
  void AnswerLetter(const StepSpec& step, size_t documents_before);

  World& w_;
  Note note_;
};

}  // namespace zintra::simtool
