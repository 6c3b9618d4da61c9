// The MAPI property identifiers (the high word of a property tag) that the readers of
// Outlook's own files (.msg items, .pst and .ost data files) read, as Outlook's
// published property tags give them.
#pragma once

#include <cstdint>

namespace zintra::simtool::mapi_ids {

inline constexpr uint16_t kMessageClass = 0x001A, kSensitivity = 0x0036, kSubject = 0x0037,
                          kClientSubmitTime = 0x0039, kSentRepresentingName = 0x0042,
                          kSentRepresentingAddrType = 0x0064, kSentRepresentingEmail = 0x0065,
                          kSenderName = 0x0C1A, kSenderAddrType = 0x0C1E, kSenderEmail = 0x0C1F,
                          kRecipientType = 0x0C15, kDeliveryTime = 0x0E06, kAttachSize = 0x0E20,
                          kBody = 0x1000, kDisplayName = 0x3001, kAddrType = 0x3002,
                          kEmailAddress = 0x3003, kAttachData = 0x3701, kAttachFilename = 0x3704,
                          kAttachMethod = 0x3705, kAttachLongFilename = 0x3707,
                          kAttachMimeTag = 0x370E, kSmtpAddress = 0x39FE, kCompanyName = 0x3A16,
                          kInternetCodepage = 0x3FDE, kMessageCodepage = 0x3FFD,
                          kSenderSmtp = 0x5D01, kSentRepresentingSmtp = 0x5D02,
                          kPasswordChecksum = 0x67FF;

// Where a data file keeps its folders: the message store names the top of the visible
// tree and some default folders, the store's root the others (entry identifiers).
inline constexpr uint16_t kIpmSubtreeEntryId = 0x35E0, kIpmOutboxEntryId = 0x35E2,
                          kIpmWastebasketEntryId = 0x35E3, kIpmSentMailEntryId = 0x35E4,
                          kIpmAppointmentEntryId = 0x36D0, kIpmContactEntryId = 0x36D1,
                          kIpmJournalEntryId = 0x36D2, kIpmNoteEntryId = 0x36D3,
                          kIpmTaskEntryId = 0x36D4, kIpmDraftsEntryId = 0x36D7,
                          kContainerClass = 0x3613;

}  // namespace zintra::simtool::mapi_ids
