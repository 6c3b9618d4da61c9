// Word's object model over its automation objects, and the Word port: the running
// Word when there is one (the running-object table), else a new one by ProgID. Word's
// own errors keep their numbers (5825, 5174, ...); Word not installed is 429.
#pragma once

#include "src/host/word.h"
#include "win32/outlook/com_adapter.h"

namespace zintra::win32 {

class ComWordVariable final : public WordVariable, public ComAdapter {
 public:
  explicit ComWordVariable(const ComPtr<IDispatch>& o)
      : ComAdapter(DispatchClient(o, "Variable")) {}
  std::string TypeName() const override { return "Variable"; }
  std::string Name() const override { return Text("Name"); }
  std::string Value() const override { return Text("Value"); }
  void SetValue(const std::string& value) override { Write("Value", zintra::Value(value)); }
  void Delete() override { client_.Call("Delete"); }
};

class ComWordVariables final : public WordVariables, public ComAdapter {
 public:
  explicit ComWordVariables(const ComPtr<IDispatch>& o)
      : ComAdapter(DispatchClient(o, "Variables")) {}
  std::string TypeName() const override { return "Variables"; }
  int32_t Count() const override { return Long("Count"); }
  std::shared_ptr<WordVariable> Item(const std::string& name) override;
  std::shared_ptr<WordVariable> Add(const std::string& name, const std::string& value) override;
};

class ComWordDocument final : public WordDocument, public ComAdapter {
 public:
  explicit ComWordDocument(const ComPtr<IDispatch>& o)
      : ComAdapter(DispatchClient(o, "Document")) {}
  std::string TypeName() const override { return "Document"; }
  std::string Name() const override { return Text("Name"); }
  std::string FullName() const override { return Text("FullName"); }
  std::shared_ptr<WordVariables> Variables() override;
  bool Saved() const override { return Bool("Saved"); }
  void SetSaved(bool saved) override { Write("Saved", Value(saved)); }
  void SaveAs(const std::string& file_name, int32_t file_format) override;
  void Close(int32_t save_changes) override;
};

class ComWordDocuments final : public WordDocuments, public ComAdapter {
 public:
  explicit ComWordDocuments(const ComPtr<IDispatch>& o)
      : ComAdapter(DispatchClient(o, "Documents")) {}
  std::string TypeName() const override { return "Documents"; }
  int32_t Count() const override { return Long("Count"); }
  std::shared_ptr<WordDocument> Item(int32_t index) override;
  std::shared_ptr<WordDocument> Add(const std::string& template_path) override;
};

class ComWordApplication final : public WordApplication, public ComAdapter {
 public:
  explicit ComWordApplication(const ComPtr<IDispatch>& o)
      : ComAdapter(DispatchClient(o, "Word.Application")) {}
  std::string TypeName() const override { return "Application"; }
  std::shared_ptr<WordDocuments> Documents() override;
  bool Visible() const override { return Bool("Visible"); }
  void SetVisible(bool visible) override { Write("Visible", Value(visible)); }
  void Activate() override { client_.Call("Activate"); }
  std::string DefaultFilePath(int32_t path_type) override;
};

class ComWord final : public Word {
 public:
  std::shared_ptr<WordApplication> Application() override;
};

}  // namespace zintra::win32
