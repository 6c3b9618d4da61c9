#include "sim/addin_host/sim_windows.h"

#include <utility>

#include "src/core/z_error.h"
#include "src/host/mapi_object.h"

namespace zintra::sim {

std::shared_ptr<zintra::Item> SimSelection::Item(int32_t index) {
  if (index < 1 || index > Count()) throw ZError(kErrInvalidCall, "Array index out of bounds.");
  return items[static_cast<size_t>(index - 1)];
}

void SimWindowBase::CheckOpen() const {
  if (!open_) throw ZError(kMapiObjectDeleted, "The object has been deleted.");
}

SimExplorer::SimExplorer(std::shared_ptr<Folder> folder, int32_t hwnd,
                         std::function<void(SimExplorer&)> close)
    : folder_(std::move(folder)), close_(std::move(close)) {
  hwnd_ = hwnd;
}

std::string SimExplorer::Caption() const {
  CheckOpen();
  return (folder_ ? folder_->Name() + " - " : std::string()) + "Microsoft Outlook";
}

std::shared_ptr<zintra::CommandBars> SimExplorer::CommandBars() {
  CheckOpen();
  return nullptr;  // the toolbar library's windows carry no bars in this model
}

void SimExplorer::Activate() {
  CheckOpen();
  ActivateEvent.Raise();
}

void SimExplorer::Close(int32_t /*save_mode*/) {
  CheckOpen();
  close_(*this);
}

std::shared_ptr<zintra::Selection> SimExplorer::Selection() {
  CheckOpen();
  return selection_;
}

std::shared_ptr<Folder> SimExplorer::CurrentFolder() {
  CheckOpen();
  return folder_;
}

SimInspector::SimInspector(std::shared_ptr<zintra::Item> item, int32_t hwnd,
                           std::function<void(SimInspector&)> close)
    : item_(std::move(item)), close_(std::move(close)) {
  hwnd_ = hwnd;
}

std::string SimInspector::Caption() const {
  CheckOpen();
  return (item_ ? item_->Subject() : std::string("Untitled")) + " - Message";
}

std::shared_ptr<zintra::CommandBars> SimInspector::CommandBars() {
  CheckOpen();
  return nullptr;
}

void SimInspector::Activate() {
  CheckOpen();
  ActivateEvent.Raise();
}

void SimInspector::Close(int32_t /*save_mode*/) {
  CheckOpen();
  close_(*this);
}

std::shared_ptr<zintra::Item> SimInspector::CurrentItem() {
  CheckOpen();
  return item_;
}

int32_t SimInspector::Hwnd() {
  CheckOpen();
  return hwnd_;
}

std::shared_ptr<Explorer> SimExplorers::Item(int32_t index) {
  if (index < 1 || index > Count()) throw ZError(kErrInvalidCall, "Array index out of bounds.");
  return open[static_cast<size_t>(index - 1)];
}

std::shared_ptr<Inspector> SimInspectors::Item(int32_t index) {
  if (index < 1 || index > Count()) throw ZError(kErrInvalidCall, "Array index out of bounds.");
  return open[static_cast<size_t>(index - 1)];
}

}  // namespace zintra::sim
