#include "win32/outlook/com_word.h"

#include "win32/outlook/com_object_factory.h"

namespace zintra::win32 {

namespace {

constexpr char kWordProgId[] = "Word.Application";

template <typename Adapter>
std::shared_ptr<Adapter> Make(const ComPtr<IDispatch>& object) {
  return object ? std::make_shared<Adapter>(object) : nullptr;
}

// The Word already running, or nullptr.
ComPtr<IDispatch> RunningWord() {
  CLSID clsid{};
  if (FAILED(CLSIDFromProgID(L"Word.Application", &clsid))) return {};
  ComPtr<IUnknown> running;
  if (FAILED(GetActiveObject(clsid, nullptr, running.Put())) || !running) return {};
  return running.As<IDispatch>();
}

}  // namespace

std::shared_ptr<WordVariable> ComWordVariables::Item(const std::string& name) {
  return Make<ComWordVariable>(ObjectMember("Item", {Arg(Value(name))}));
}

std::shared_ptr<WordVariable> ComWordVariables::Add(const std::string& name,
                                                    const std::string& value) {
  return Make<ComWordVariable>(
      client_.Call("Add", {Arg(Value(name)), Arg(Value(value))}).ToObject());
}

std::shared_ptr<WordVariables> ComWordDocument::Variables() {
  return Make<ComWordVariables>(ObjectMember("Variables"));
}

void ComWordDocument::SaveAs(const std::string& file_name, int32_t file_format) {
  client_.Call("SaveAs", {Arg(Value(file_name)), Arg(Value(file_format))});
}

void ComWordDocument::Close(int32_t save_changes) {
  client_.Call("Close", {Arg(Value(save_changes))});
}

std::shared_ptr<WordDocument> ComWordDocuments::Item(int32_t index) {
  return Make<ComWordDocument>(ObjectMember("Item", {Arg(Value(index))}));
}

std::shared_ptr<WordDocument> ComWordDocuments::Add(const std::string& template_path) {
  return Make<ComWordDocument>(client_.Call("Add", {Arg(Value(template_path))}).ToObject());
}

std::shared_ptr<WordDocuments> ComWordApplication::Documents() {
  return Make<ComWordDocuments>(ObjectMember("Documents"));
}

std::string ComWordApplication::DefaultFilePath(int32_t path_type) {
  DispatchClient options(ObjectMember("Options"), "Options");
  return options.GetValue("DefaultFilePath", {Arg(Value(path_type))}).ToString();
}

std::shared_ptr<WordApplication> ComWord::Application() {
  ComPtr<IDispatch> word = RunningWord();
  if (!word) word = ComObjectFactory::CreateDispatch(kWordProgId);
  return std::make_shared<ComWordApplication>(word);
}

}  // namespace zintra::win32
