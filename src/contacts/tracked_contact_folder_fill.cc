// The cache fill of TrackedContactFolder: the contents table, one chunk of rows per
// activation, and the ways a fill ends (complete, Outlook exiting, aborted, the
// folder no longer answering).
#include <algorithm>

#include "src/contacts/contacts_addin.h"
#include "src/contacts/tracked_contact_folder.h"
#include "src/contacts/tracked_contacts.h"
#include "src/core/z_error.h"
#include "src/errors/cached_error.h"
#include "src/host/mapi_object.h"
#include "src/host/mapi_table.h"
#include "src/host/mapi_utils.h"
#include "src/host/outlook_folder.h"
#include "src/jobs/job_engine_log.h"
#include "src/jobs/job_queue.h"
#include "src/resources/string_table.h"
#include "src/settings/reg_settings.h"

namespace zintra {

namespace {

constexpr char kTrackedContactFolderFillModule[] = "TrackedContactFolder";
constexpr int32_t kMinChunk = 1;
constexpr int32_t kMaxChunk = 10000;

std::string Hex(const Value::Binary& bytes) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string out;
  out.reserve(bytes.size() * 2);
  for (uint8_t b : bytes) {
    out.push_back(kDigits[b >> 4]);
    out.push_back(kDigits[b & 0x0F]);
  }
  return out;
}

// A text cell; an error value, an empty cell or a value of another type counts as "".
std::string AddressIn(const MapiCell& cell) {
  if (cell.IsError() || cell.value.Type() != ValueType::kString) return {};
  return cell.value.ToString();
}

}  // namespace

bool TrackedContactFolder::StartCaching() {
  auto app = app_.lock();
  if (!app || !folder_) return false;
  try {
    auto utils = app->LibraryUtils();
    if (!utils) throw ZError(kErrObjectNotSet, "The MAPI library's utilities are not available");
    auto table = std::dynamic_pointer_cast<MapiTable>(app->CreateLibraryObject(kLibraryMapiTable));
    if (!table) throw ZError(kErrTypeMismatch, "The library's table object is not a MAPI table");
    auto mapi_folder = folder_->MAPIOBJECT();
    std::vector<int32_t> columns;
    for (int32_t id : {kEmail1AddressId, kEmail2AddressId, kEmail3AddressId}) {
      const int32_t tag = utils->GetIDsFromNames(mapi_folder, kContactPropSet, Value(id), true);
      columns.push_back(tag | kPtString8);
    }
    columns.push_back(kPrEntryId);
    table->SetItem(folder_);
    table->SetColumns(columns);
    table_ = std::move(table);
    cache_.emplace();
    return true;
  } catch (const ZError& e) {
    LogError(ZError(e.Number(),
                    "Cache for folder '" + Name() +
                        "' cannot be filled; the folder is searched uncached: " + e.Description()),
             "StartCaching");
    table_.reset();
    cache_.reset();
    return false;
  }
}

void TrackedContactFolder::RefreshCache() {
  auto app = app_.lock();
  if (killed_ || !app || !table_ || !cache_ || app->Quitting() || Filling()) return;
  auto queue = app->GetJobQueue();
  if (!queue) return;
  try {
    rows_filled_ = 0;
    table_->GoToFirst();
    row_count_ = table_->RowCount();
    filling_.emplace();
    // Room for every address a contact can carry: growing the index on the way would
    // rehash all the addresses read so far inside one activation.
    filling_->Reserve(static_cast<size_t>(row_count_), 3 * static_cast<size_t>(row_count_));
    task_id_ =
        queue->TaskListAdd(JobDescription(), kFillTaskIcon, static_cast<float>(row_count_), true);
  } catch (const ZError& e) {
    ReportConnectionFailure(e, "RefreshCache");
    return;
  }
  LogLine("Cache for folder '" + Name() + "' beginning refresh process.");
  queue->Queue(shared_from_this(), false);
}

void TrackedContactFolder::Activate() {
  auto app = app_.lock();
  if (killed_ || !app || !filling_ || !table_) return;
  if (app->Settings().StopFillingCachesOnExit && app->Quitting()) {
    LogLine("Cache for folder '" + Name() + "' switched to uncached mode for Outlook exit.");
    DropCache();
    RemoveTask();
    if (auto owner = owner_.lock()) owner->FolderReady(key_);
    return;
  }
  try {
    row_count_ = table_->RowCount();
    if (rows_filled_ >= row_count_) {
      FinishFill();
      return;
    }
    const int32_t chunk =
        std::clamp<int32_t>(app->Settings().GetRowChunkSize, kMinChunk, kMaxChunk);
    MapiRows rows = table_->GetRows(chunk);
    if (rows.IsError() || rows.rows.empty()) {
      ReportConnectionFailure(ZError(rows.error ? rows.error : kMapiCallFailed,
                                     "Failed to retrieve rows while filling cache"),
                              "IJob_Activate");
      return;
    }
    rows_filled_ += static_cast<int32_t>(rows.rows.size());
    for (const MapiRow& row : rows.rows) {
      if (row.IsError() || row.cells.size() < 4) continue;
      const MapiCell& id = row.cells[3];
      if (id.IsError() || id.value.Type() != ValueType::kBinary) continue;
      filling_->Add(Hex(id.value.ToBinary()), AddressIn(row.cells[0]), AddressIn(row.cells[1]),
                    AddressIn(row.cells[2]));
    }
    auto queue = app->GetJobQueue();
    if (!queue) return;
    queue->TaskListProgress(task_id_, static_cast<float>(rows_filled_));
    queue->Queue(shared_from_this(), false);
  } catch (const ZError& e) {
    ReportConnectionFailure(e, "IJob_Activate");
  }
}

void TrackedContactFolder::FinishFill() {
  auto app = app_.lock();
  if (!app) return;
  LogLine("Cache for folder '" + Name() + "' finished refresh process.");
  RemoveTask();
  cache_ = std::move(filling_);
  filling_.reset();
  if (app->Settings().KeepCacheSynched) HookItemEvents();
  cached_ = true;
  last_fill_time_ = app->Now();
  if (auto owner = owner_.lock()) owner->FolderReady(key_);
}

void TrackedContactFolder::Abort() {
  if (!Filling()) return;
  RemoveTask();
  DropCache();
  LogLine("Cache for folder '" + Name() + "' switched to uncached mode due to job abort.");
  if (auto owner = owner_.lock()) owner->FolderReady(key_);
}

void TrackedContactFolder::DropCache() {
  UnhookItemEvents();
  cache_.reset();
  filling_.reset();
  table_.reset();
  cached_ = false;
}

void TrackedContactFolder::RemoveTask() {
  if (task_id_.empty()) return;
  const std::string id = std::exchange(task_id_, {});
  auto app = app_.lock();
  auto queue = app ? app->GetJobQueue() : nullptr;
  if (!queue) return;
  try {
    queue->TaskListRemove(id);
  } catch (const ZError& e) {
    LogError(e, "RemoveTask");  // the queue dropped its tasks already (shut-down)
  }
}

void TrackedContactFolder::ReportConnectionFailure(const ZError& error, const char* proc) {
  auto app = app_.lock();
  const std::string name = Name();
  if (app) {
    CachedError rec(ZError(error.Number(), "Connection to folder " + name +
                                               " died for reason:" + error.Description()),
                    kTrackedContactFolderFillModule, proc);
    app->Log().LogCachedError(rec);
    const StringTable& strings = app->Strings();
    app->OptionalMsgBox(kDialogFolderConnectionLost,
                        strings.Load(kStrFolderConnectionLost) + "\r\n\r\n" + name,
                        strings.Load(kStrProductName));
  }
  Kill();
  if (auto owner = owner_.lock()) owner->FolderDied(key_);
}

}  // namespace zintra
