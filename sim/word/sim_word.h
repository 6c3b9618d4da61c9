// SimWord: Word over a FileSystem port. Templates and saved documents are files of
// that file system; a document's content is its text, which a new document takes
// from its template and SaveAs writes out byte for byte. Documents keep their
// variables in the order they were added. Word is "started" by the first
// Application call; with `installed` False that call throws 429.
//
// Ownership: the test owns SimWord and the FileSystem, which must outlive it; the
// application lives while SimWord or a caller holds it. A closed document's members
// throw kWordObjectDeleted.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "src/host/file_system.h"
#include "src/host/word.h"

namespace zintra::sim {

class SimWordApplication;

class SimWordDocument : public WordDocument, public std::enable_shared_from_this<SimWordDocument> {
 public:
  SimWordDocument(SimWordApplication* app, std::string name, std::string text);
  std::string TypeName() const override { return "Document"; }
  std::string Name() const override;
  std::string FullName() const override;
  std::shared_ptr<WordVariables> Variables() override;
  bool Saved() const override;
  void SetSaved(bool saved) override;
  void SaveAs(const std::string& file_name, int32_t file_format) override;
  void Close(int32_t save_changes) override;

  // --- the user and tests ---
  // The user types text at the end of the document.
  void TypeText(const std::string& text);
  const std::string& text() const { return text_; }
  bool closed() const { return closed_; }
  int32_t save_count() const { return save_count_; }
  // Variables, name and value, in order.
  std::vector<std::pair<std::string, std::string>>& variables() { return variables_; }

 private:
  friend class SimWordVariables;
  friend class SimWordVariable;
  void Check() const;

  SimWordApplication* app_;
  std::string name_;
  std::string path_;  // "" until saved
  std::string text_;
  std::vector<std::pair<std::string, std::string>> variables_;
  bool saved_ = true;
  bool closed_ = false;
  int32_t save_count_ = 0;
};

class SimWordApplication : public WordApplication {
 public:
  SimWordApplication(FileSystem& files, std::string user_templates);
  std::string TypeName() const override { return "Application"; }
  std::shared_ptr<WordDocuments> Documents() override;
  bool Visible() const override { return visible_; }
  void SetVisible(bool visible) override { visible_ = visible; }
  void Activate() override { ++activations_; }
  std::string DefaultFilePath(int32_t path_type) override;

  FileSystem& files() { return files_; }
  std::vector<std::shared_ptr<SimWordDocument>>& open_documents() { return documents_; }
  int32_t activations() const { return activations_; }
  std::string NextDocumentName() { return "Document" + std::to_string(++document_count_); }

 private:
  FileSystem& files_;
  std::string user_templates_;
  std::vector<std::shared_ptr<SimWordDocument>> documents_;
  bool visible_ = false;
  int32_t activations_ = 0;
  int32_t document_count_ = 0;
};

class SimWord : public Word {
 public:
  // `user_templates`: the folder Word reports as the user's templates folder.
  explicit SimWord(FileSystem& files, std::string user_templates = "C:\\Templates")
      : files_(files), user_templates_(std::move(user_templates)) {}
  std::shared_ptr<WordApplication> Application() override;

  bool installed = true;
  // The running Word, nullptr before the first Application call.
  const std::shared_ptr<SimWordApplication>& running() const { return app_; }
  int32_t starts() const { return starts_; }

 private:
  FileSystem& files_;
  std::string user_templates_;
  std::shared_ptr<SimWordApplication> app_;
  int32_t starts_ = 0;
};

}  // namespace zintra::sim
