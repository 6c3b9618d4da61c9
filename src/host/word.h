// Word's object model, as far as the letters need it: documents made from a template,
// their document variables, save-as and close. Reached through the Word port, which
// attaches to the running Word or starts it.
//
// Ownership: callers hold the objects they are given; Word keeps an open document
// alive until it is closed. A member of a closed document throws kWordObjectDeleted.
// Called on Outlook's user-interface thread. Failures throw ZError with Word's
// numbers: a missing variable kWordObjectDeleted (Word's "Object has been deleted"),
// an unreadable template or file kWordCannotOpen, a file that cannot be written
// kWordCannotSave; Word not installed 429.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "src/host/automation_object.h"

namespace zintra {

inline constexpr int32_t kWordObjectDeleted = 5825;
inline constexpr int32_t kWordCannotOpen = 5174;
inline constexpr int32_t kWordCannotSave = 5153;
inline constexpr int32_t kWordNameInUse = 5903;

// WdSaveOptions and WdSaveFormat values.
inline constexpr int32_t kWdDoNotSaveChanges = 0;
inline constexpr int32_t kWdSaveChanges = -1;
inline constexpr int32_t kWdFormatDocument = 0;
// WdDefaultFilePath: the user's templates folder.
inline constexpr int32_t kWdUserTemplatesPath = 2;

class WordVariable : public AutomationObject {
 public:
  virtual std::string Name() const = 0;
  virtual std::string Value() const = 0;
  virtual void SetValue(const std::string& value) = 0;
  virtual void Delete() = 0;
};

class WordVariables : public AutomationObject {
 public:
  virtual int32_t Count() const = 0;
  // By name, without regard to letter case; an absent name throws kWordObjectDeleted.
  virtual std::shared_ptr<WordVariable> Item(const std::string& name) = 0;
  // A name already present throws kWordNameInUse.
  virtual std::shared_ptr<WordVariable> Add(const std::string& name, const std::string& value) = 0;
};

class WordDocument : public AutomationObject {
 public:
  virtual std::string Name() const = 0;      // "Document1", or the file name once saved
  virtual std::string FullName() const = 0;  // the path once saved, else Name
  virtual std::shared_ptr<WordVariables> Variables() = 0;
  virtual bool Saved() const = 0;
  virtual void SetSaved(bool saved) = 0;
  // Writes the document to `file_name` (an existing file is overwritten) and makes
  // that its name; the document counts as saved afterwards.
  virtual void SaveAs(const std::string& file_name, int32_t file_format = kWdFormatDocument) = 0;
  // save_changes: kWdDoNotSaveChanges or kWdSaveChanges.
  virtual void Close(int32_t save_changes = kWdDoNotSaveChanges) = 0;
};

class WordDocuments : public AutomationObject {
 public:
  virtual int32_t Count() const = 0;
  virtual std::shared_ptr<WordDocument> Item(int32_t index) = 0;  // 1-based; else 5
  // A new document based on the template at `template_path` (its text and variables).
  virtual std::shared_ptr<WordDocument> Add(const std::string& template_path) = 0;
};

class WordApplication : public AutomationObject {
 public:
  virtual std::shared_ptr<WordDocuments> Documents() = 0;
  virtual bool Visible() const = 0;
  virtual void SetVisible(bool visible) = 0;
  virtual void Activate() = 0;
  // Options.DefaultFilePath: the folder (without trailing backslash) of a path type.
  virtual std::string DefaultFilePath(int32_t path_type) = 0;
};

// The port: Word as the add-in reaches it ("Word.Application").
class Word {
 public:
  virtual ~Word() = default;
  // The running Word, started when it is not running; throws 429 when not installed.
  virtual std::shared_ptr<WordApplication> Application() = 0;
};

}  // namespace zintra
