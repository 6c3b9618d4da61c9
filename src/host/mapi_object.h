// MapiObject: the MAPI interface under an Outlook object (its MAPIOBJECT property: a
// message, a folder or the session). It is opaque to the system: it is only handed
// to the MAPI library (MapiUtils, RdoSession), which reads and writes properties
// through it. The object it came from keeps it alive as long as the caller holds it.
#pragma once

#include <cstdint>
#include <string>

#include "src/host/automation_object.h"

namespace zintra {

class MapiObject : public AutomationObject {};

// MAPI error codes (HRESULTs) the system meets, as ZError numbers.
inline constexpr int32_t kMapiNotFound = static_cast<int32_t>(0x8004010Fu);
inline constexpr int32_t kMapiObjectDeleted = static_cast<int32_t>(0x8004010Au);
inline constexpr int32_t kMapiNoAccess = static_cast<int32_t>(0x80070005u);
inline constexpr int32_t kMapiCallFailed = static_cast<int32_t>(0x80004005u);
inline constexpr int32_t kMapiInvalidParameter = static_cast<int32_t>(0x80070057u);
inline constexpr int32_t kMapiNetworkError = static_cast<int32_t>(0x80040115u);
inline constexpr int32_t kMapiNotInitialized = static_cast<int32_t>(0x80040605u);
inline constexpr int32_t kMapiNoSupport = static_cast<int32_t>(0x80040102u);

// Property types.
inline constexpr uint16_t kPtUnspecified = 0x0000;
inline constexpr uint16_t kPtLong = 0x0003;
inline constexpr uint16_t kPtDouble = 0x0005;
inline constexpr uint16_t kPtError = 0x000A;
inline constexpr uint16_t kPtBoolean = 0x000B;
inline constexpr uint16_t kPtString8 = 0x001E;
inline constexpr uint16_t kPtUnicode = 0x001F;
inline constexpr uint16_t kPtSystime = 0x0040;
inline constexpr uint16_t kPtBinary = 0x0102;
inline constexpr uint16_t kPtMvString8 = 0x101E;

// Property tags (id << 16 | type).
inline constexpr int32_t kPrMessageClass = 0x001A001E;
inline constexpr int32_t kPrSubject = 0x0037001E;
inline constexpr int32_t kPrSensitivity = 0x00360003;
inline constexpr int32_t kPrClientSubmitTime = 0x00390040;  // SentOn
inline constexpr int32_t kPrSenderName = 0x0C1A001E;
inline constexpr int32_t kPrSenderAddrType = 0x0C1E001E;
inline constexpr int32_t kPrSenderEmailAddress = 0x0C1F001E;
inline constexpr int32_t kPrMessageDeliveryTime = 0x0E060040;  // ReceivedTime
inline constexpr int32_t kPrBody = 0x1000001E;
inline constexpr int32_t kPrStoreEntryId = 0x0FFB0102;
inline constexpr int32_t kPrEntryId = static_cast<int32_t>(0x0FFF0102);
inline constexpr int32_t kPrDisplayName = 0x3001001E;
inline constexpr int32_t kPrAddrType = 0x3002001E;
inline constexpr int32_t kPrEmailAddress = 0x3003001E;
inline constexpr int32_t kPrCreationTime = 0x30070040;
inline constexpr int32_t kPrLastModificationTime = 0x30080040;
inline constexpr int32_t kPrSearchKey = 0x300B0102;
inline constexpr int32_t kPrSmtpAddress = 0x39FE001E;
inline constexpr int32_t kPrContentCount = 0x36020003;

// Property sets.
inline constexpr char kPsPublicStrings[] = "{00020329-0000-0000-C000-000000000046}";
inline constexpr char kPsetidAddress[] = "{00062004-0000-0000-C000-000000000046}";
inline constexpr char kPsetidCommon[] = "{00062008-0000-0000-C000-000000000046}";
inline constexpr char kPsetidTask[] = "{00062003-0000-0000-C000-000000000046}";
inline constexpr char kPsetidLog[] = "{0006200A-0000-0000-C000-000000000046}";

inline constexpr uint16_t PropType(int32_t tag) { return static_cast<uint16_t>(tag & 0xFFFF); }
inline constexpr uint16_t PropId(int32_t tag) {
  return static_cast<uint16_t>((static_cast<uint32_t>(tag) >> 16) & 0xFFFF);
}
inline constexpr int32_t PropTag(uint16_t id, uint16_t type) {
  return static_cast<int32_t>((static_cast<uint32_t>(id) << 16) | type);
}

}  // namespace zintra
