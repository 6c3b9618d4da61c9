#include "src/contacts/folderset_config.h"

#include "src/core/text.h"
#include "src/settings/reg_settings.h"

namespace zintra {

namespace {

std::string ElementOf(const StringList& list, int32_t index) {
  return index >= 1 && index <= list.Count() ? list.Item(index) : std::string();
}

FolderIds PairOf(const StringList& entry_ids, const StringList& store_ids, int32_t index) {
  return FolderIds{ElementOf(entry_ids, index), ElementOf(store_ids, index)};
}

}  // namespace

FoldersetConfig FoldersetConfig::FromSettings(const RegSettings& s, int32_t index) {
  FoldersetConfig c;
  c.Contact = PairOf(s.ContactFolderEntryIDs, s.ContactFolderStoreIDs, index);
  c.Email = PairOf(s.EmailFolderEntryIDs, s.EmailFolderStoreIDs, index);
  c.Journal = PairOf(s.JournalFolderEntryIDs, s.JournalFolderStoreIDs, index);
  c.SharedCalendar = PairOf(s.SharedCalendarEntryIDs, s.SharedCalendarStoreIDs, index);
  c.SharedJournal = PairOf(s.SharedJournalEntryIDs, s.SharedJournalStoreIDs, index);
  c.SharedTaskList = PairOf(s.SharedTaskListEntryIDs, s.SharedTaskListStoreIDs, index);
  if (index >= 1 && index <= s.FoldersetFlags.Count()) c.Flags = s.FoldersetFlags.Item(index);
  return c;
}

std::optional<int32_t> FindFoldersetIndex(const RegSettings& settings, const std::string& EntryID,
                                          const std::string& StoreID) {
  for (int32_t i = 1; i <= settings.FoldersetCount; ++i) {
    const FolderIds ids = PairOf(settings.ContactFolderEntryIDs, settings.ContactFolderStoreIDs, i);
    if (text::EqualsNoCase(ids.EntryID, EntryID) && text::EqualsNoCase(ids.StoreID, StoreID)) {
      return i;
    }
  }
  return std::nullopt;
}

}  // namespace zintra
