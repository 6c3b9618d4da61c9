// TaskListView: the window of the "finishing tasks" list: one row per task with its
// icon and progress, an overall progress bar, an abort button and a minimise button.
// Rows are named by the key the caller gives; a key is used by one row at a time.
// Updating or removing a row that is not there does nothing. Raises AbortClick and
// MinimizeClick when the user presses the buttons.
#pragma once

#include <cstdint>
#include <string>

#include "src/core/event.h"
#include "src/host/window.h"

namespace zintra {

class TaskListView : public FormView {
 public:
  virtual void SetAbortCaption(const std::string& caption) = 0;
  virtual void AddRow(const std::string& key, const std::string& description,
                      int32_t icon_index) = 0;
  // Row progress as a whole percentage, 0 to 100.
  virtual void SetRowProgress(const std::string& key, int32_t percent) = 0;
  virtual void RemoveRow(const std::string& key) = 0;
  // The overall bar runs from 0 to ProgressMax().
  virtual int32_t ProgressMax() const = 0;
  virtual void SetProgress(int32_t value) = 0;

  Event<> AbortClick;
  Event<> MinimizeClick;
};

}  // namespace zintra
