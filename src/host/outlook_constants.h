// Outlook's enumerations, with the numbers of its object model.
#pragma once

#include <cstdint>

namespace zintra {

// OlObjectClass of the item kinds: the sixteen Outlook item classes, the note and the
// sharing item.
enum class ItemClass : int32_t {
  kAppointment = 26,
  kContact = 40,
  kDocument = 41,
  kJournal = 42,
  kMail = 43,
  kNote = 44,
  kPost = 45,
  kReport = 46,
  kRemote = 47,
  kTask = 48,
  kTaskRequest = 49,
  kTaskRequestUpdate = 50,
  kTaskRequestAccept = 51,
  kTaskRequestDecline = 52,
  kMeeting = 53,
  kDistList = 69,
  kSharing = 104,
};

// OlItemType (CreateItem, Items.Add, Folder::DefaultItemType).
inline constexpr int32_t kOlMailItem = 0;
inline constexpr int32_t kOlAppointmentItem = 1;
inline constexpr int32_t kOlContactItem = 2;
inline constexpr int32_t kOlTaskItem = 3;
inline constexpr int32_t kOlJournalItem = 4;
inline constexpr int32_t kOlNoteItem = 5;
inline constexpr int32_t kOlPostItem = 6;
inline constexpr int32_t kOlDistributionListItem = 7;

// OlDefaultFolders.
inline constexpr int32_t kOlFolderDeletedItems = 3;
inline constexpr int32_t kOlFolderOutbox = 4;
inline constexpr int32_t kOlFolderSentMail = 5;
inline constexpr int32_t kOlFolderInbox = 6;
inline constexpr int32_t kOlFolderCalendar = 9;
inline constexpr int32_t kOlFolderContacts = 10;
inline constexpr int32_t kOlFolderJournal = 11;
inline constexpr int32_t kOlFolderNotes = 12;
inline constexpr int32_t kOlFolderTasks = 13;
inline constexpr int32_t kOlFolderDrafts = 16;

// OlUserPropertyType.
inline constexpr int32_t kOlText = 1;
inline constexpr int32_t kOlNumber = 3;
inline constexpr int32_t kOlDateTime = 5;
inline constexpr int32_t kOlYesNo = 6;
inline constexpr int32_t kOlInteger = 20;

// OlSensitivity.
inline constexpr int32_t kOlNormal = 0;
inline constexpr int32_t kOlPersonal = 1;
inline constexpr int32_t kOlPrivate = 2;
inline constexpr int32_t kOlConfidential = 3;

// OlTaskOwnership.
inline constexpr int32_t kOlNewTask = 0;
inline constexpr int32_t kOlDelegatedTask = 1;
inline constexpr int32_t kOlOwnTask = 2;

// OlMailRecipientType.
inline constexpr int32_t kOlOriginator = 0;
inline constexpr int32_t kOlTo = 1;
inline constexpr int32_t kOlCC = 2;
inline constexpr int32_t kOlBCC = 3;

// OlAttachmentType.
inline constexpr int32_t kOlByValue = 1;
inline constexpr int32_t kOlByReference = 4;
inline constexpr int32_t kOlEmbeddedItem = 5;

// OlDefaultItemType of Folder::DefaultItemType follows OlItemType.
// OlInspectorClose / OlInspectorWindowState are not used.

// MsoBarPosition / MsoControlType as far as the toolbar uses them.
inline constexpr int32_t kMsoBarLeft = 0;
inline constexpr int32_t kMsoBarTop = 1;
inline constexpr int32_t kMsoControlButton = 1;
inline constexpr int32_t kMsoControlPopup = 10;

// The interface name of an item class ("MailItem", "SharingItem", ...).
inline const char* ItemClassTypeName(ItemClass item_class) {
  switch (item_class) {
    case ItemClass::kAppointment:
      return "AppointmentItem";
    case ItemClass::kContact:
      return "ContactItem";
    case ItemClass::kDocument:
      return "DocumentItem";
    case ItemClass::kJournal:
      return "JournalItem";
    case ItemClass::kMail:
      return "MailItem";
    case ItemClass::kNote:
      return "NoteItem";
    case ItemClass::kPost:
      return "PostItem";
    case ItemClass::kReport:
      return "ReportItem";
    case ItemClass::kRemote:
      return "RemoteItem";
    case ItemClass::kTask:
      return "TaskItem";
    case ItemClass::kTaskRequest:
      return "TaskRequestItem";
    case ItemClass::kTaskRequestUpdate:
      return "TaskRequestUpdateItem";
    case ItemClass::kTaskRequestAccept:
      return "TaskRequestAcceptItem";
    case ItemClass::kTaskRequestDecline:
      return "TaskRequestDeclineItem";
    case ItemClass::kMeeting:
      return "MeetingItem";
    case ItemClass::kDistList:
      return "DistListItem";
    case ItemClass::kSharing:
      return "SharingItem";
  }
  return "Object";
}

}  // namespace zintra
