#include "sim/word/sim_word.h"

#include <algorithm>

#include "src/core/text.h"
#include "src/core/z_error.h"

namespace zintra::sim {

namespace {

ZError Deleted() { return ZError(kWordObjectDeleted, "Object has been deleted."); }

std::string FileNameOf(const std::string& path) {
  size_t slash = path.find_last_of("\\/");
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

}  // namespace

class SimWordVariable : public WordVariable {
 public:
  SimWordVariable(std::shared_ptr<SimWordDocument> doc, std::string name)
      : doc_(std::move(doc)), name_(std::move(name)) {}
  std::string TypeName() const override { return "Variable"; }
  std::string Name() const override { return Slot().first; }
  std::string Value() const override { return Slot().second; }
  void SetValue(const std::string& value) override {
    Slot().second = value;
    doc_->saved_ = false;
  }
  void Delete() override {
    auto& vars = doc_->variables_;
    auto& slot = Slot();
    vars.erase(vars.begin() + (&slot - vars.data()));
    doc_->saved_ = false;
  }

 private:
  std::pair<std::string, std::string>& Slot() const {
    doc_->Check();
    for (auto& v : doc_->variables_) {
      if (text::EqualsNoCase(v.first, name_)) return v;
    }
    throw Deleted();
  }
  std::shared_ptr<SimWordDocument> doc_;
  std::string name_;
};

class SimWordVariables : public WordVariables {
 public:
  explicit SimWordVariables(std::shared_ptr<SimWordDocument> doc) : doc_(std::move(doc)) {}
  std::string TypeName() const override { return "Variables"; }
  int32_t Count() const override {
    doc_->Check();
    return static_cast<int32_t>(doc_->variables_.size());
  }
  std::shared_ptr<WordVariable> Item(const std::string& name) override {
    doc_->Check();
    for (auto& v : doc_->variables_) {
      if (text::EqualsNoCase(v.first, name))
        return std::make_shared<SimWordVariable>(doc_, v.first);
    }
    throw Deleted();
  }
  std::shared_ptr<WordVariable> Add(const std::string& name, const std::string& value) override {
    doc_->Check();
    for (auto& v : doc_->variables_) {
      if (text::EqualsNoCase(v.first, name)) {
        throw ZError(kWordNameInUse, "This variable name already exists.");
      }
    }
    doc_->variables_.emplace_back(name, value);
    doc_->saved_ = false;
    return std::make_shared<SimWordVariable>(doc_, name);
  }

 private:
  std::shared_ptr<SimWordDocument> doc_;
};

SimWordDocument::SimWordDocument(SimWordApplication* app, std::string name, std::string text)
    : app_(app), name_(std::move(name)), text_(std::move(text)) {}

void SimWordDocument::Check() const {
  if (closed_) throw Deleted();
}

std::string SimWordDocument::Name() const {
  Check();
  return name_;
}

std::string SimWordDocument::FullName() const {
  Check();
  return path_.empty() ? name_ : path_;
}

std::shared_ptr<WordVariables> SimWordDocument::Variables() {
  Check();
  return std::make_shared<SimWordVariables>(shared_from_this());
}

bool SimWordDocument::Saved() const {
  Check();
  return saved_;
}

void SimWordDocument::SetSaved(bool saved) {
  Check();
  saved_ = saved;
}

void SimWordDocument::SaveAs(const std::string& file_name, int32_t /*file_format*/) {
  Check();
  try {
    app_->files().WriteAll(file_name, text_);
  } catch (const ZError& e) {
    throw ZError(kWordCannotSave, "Word cannot save this file: " + e.Description());
  }
  path_ = file_name;
  name_ = FileNameOf(file_name);
  saved_ = true;
  ++save_count_;
}

void SimWordDocument::Close(int32_t save_changes) {
  Check();
  if (save_changes == kWdSaveChanges && !saved_) {
    if (path_.empty()) throw ZError(kWordCannotSave, "The document has no file name.");
    SaveAs(path_, kWdFormatDocument);
  }
  closed_ = true;
  auto& docs = app_->open_documents();
  docs.erase(std::remove(docs.begin(), docs.end(), shared_from_this()), docs.end());
}

void SimWordDocument::TypeText(const std::string& text) {
  Check();
  text_ += text;
  saved_ = false;
}

class SimWordDocuments : public WordDocuments {
 public:
  explicit SimWordDocuments(SimWordApplication* app) : app_(app) {}
  std::string TypeName() const override { return "Documents"; }
  int32_t Count() const override { return static_cast<int32_t>(app_->open_documents().size()); }
  std::shared_ptr<WordDocument> Item(int32_t index) override {
    auto& docs = app_->open_documents();
    if (index < 1 || static_cast<size_t>(index) > docs.size()) {
      throw ZError(kErrInvalidCall, "The requested member of the collection does not exist.");
    }
    return docs[static_cast<size_t>(index - 1)];
  }
  std::shared_ptr<WordDocument> Add(const std::string& template_path) override {
    std::string text;
    if (!template_path.empty()) {
      try {
        text = app_->files().ReadAll(template_path);
      } catch (const ZError&) {
        throw ZError(kWordCannotOpen, "Word cannot open the document template: " + template_path);
      }
    }
    auto doc = std::make_shared<SimWordDocument>(app_, app_->NextDocumentName(), std::move(text));
    app_->open_documents().push_back(doc);
    return doc;
  }

 private:
  SimWordApplication* app_;
};

SimWordApplication::SimWordApplication(FileSystem& files, std::string user_templates)
    : files_(files), user_templates_(std::move(user_templates)) {}

std::shared_ptr<WordDocuments> SimWordApplication::Documents() {
  return std::make_shared<SimWordDocuments>(this);
}

std::string SimWordApplication::DefaultFilePath(int32_t path_type) {
  if (path_type != kWdUserTemplatesPath) {
    throw ZError(kErrInvalidCall, "Invalid procedure call or argument");
  }
  return user_templates_;
}

std::shared_ptr<WordApplication> SimWord::Application() {
  if (!installed) throw ZError(429, "ActiveX component can't create object");
  if (!app_) {
    app_ = std::make_shared<SimWordApplication>(files_, user_templates_);
    ++starts_;
  }
  return app_;
}

}  // namespace zintra::sim
