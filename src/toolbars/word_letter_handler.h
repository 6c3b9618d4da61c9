// WordLetterHandler: files a letter written from "Zintra Letter.dot" in Outlook. The
// template's own macro calls LogDocument with the document when the user is done;
// nothing inside the add-in calls it.
//
// LogDocument reads the document variables the letter button wrote (identifier forms
// in letter_ids.h): an absent or empty "Zintra_Log_To" means the document is not a
// Zintra letter and it is left untouched. Otherwise a journal entry of type "Letter"
// is added to that folder, linked to the "Zintra_Link_To" contact, given the
// "Zintra_Subject" subject and a copy of the document (saved as
// "Letter (Logged by Zintra).doc" in the temporary folder, replacing any file of that
// name) attached by value; the entry is saved inside the save bracket and the
// document closed.
//
// Failures: an error in those steps is logged through the add-in's error handling
// and reported with text 1901 ("Could not log the document"); the document then stays
// open, so the letter is not lost. LogDocument never throws. The handler borrows the
// add-in, which must outlive the call.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace zintra {

class ToolbarsAddin;
class WordDocument;

inline constexpr char kLetterTempFileName[] = "Letter (Logged by Zintra).doc";
inline constexpr int32_t kStrCouldNotLogDocument = 1901;

class WordLetterHandler {
 public:
  explicit WordLetterHandler(std::shared_ptr<ToolbarsAddin> app) : app_(std::move(app)) {}

  void LogDocument(const std::shared_ptr<WordDocument>& Document);

 private:
  void FileLetter(const std::shared_ptr<WordDocument>& Document, const std::string& log_to);

  std::shared_ptr<ToolbarsAddin> app_;
};

// A document variable's value; "" when the document has no such variable.
std::string DocumentVariable(WordDocument& document, const std::string& name);

}  // namespace zintra
