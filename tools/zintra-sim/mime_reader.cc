#include "tools/zintra-sim/mime_reader.h"

#include <gmime/gmime.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>

#include "src/core/text.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/text_decoding.h"

namespace zintra::simtool {

namespace {

void InitOnce() {
  static std::once_flag once;
  std::call_once(once, [] { g_mime_init(); });
}

struct GFree {
  void operator()(void* p) const { g_free(p); }
};
using GString_ = std::unique_ptr<char, GFree>;
struct Unref {
  void operator()(void* p) const { g_object_unref(p); }
};
template <typename T>
using GRef = std::unique_ptr<T, Unref>;
struct IterFree {
  void operator()(GMimePartIter* p) const { g_mime_part_iter_free(p); }
};

// Folded header text keeps its line breaks in GMime's names; show them on one line.
std::string OneLine(const char* s) {
  std::string out;
  bool space = false;
  for (const char* p = s; *p; ++p) {
    if (*p == ' ' || *p == '\t' || *p == '\r' || *p == '\n') {
      space = !out.empty();
    } else {
      if (space) out += ' ';
      space = false;
      out += *p;
    }
  }
  return out;
}

// What one message's reading needs besides the message: the parser options (fallback
// charsets for 8-bit headers), the mail's declared charset for parts that declare none,
// and what is counted for the file's notes.
struct ReadContext {
  GMimeParserOptions* options = nullptr;
  std::string charset;
  int skipped = 0;
  bool fell_back = false;
};

std::string Utf8(const std::string& s, ReadContext& cx) {
  bool fell_back = false;
  std::string out = DecodeText(s, "", &fell_back);
  cx.fell_back = cx.fell_back || fell_back;
  return out;
}

PersonSpec Person(std::string address, const std::string& name, ReadContext& cx) {
  PersonSpec p;
  address = Utf8(address, cx);
  if (text::StartsWith(text::LCase(address), "/o=")) {
    p.exchange = address;
  } else {
    p.smtp = address;  // as the mail gives it, local addresses ("abel") too
  }
  p.name = name.empty() ? address : Utf8(OneLine(name.c_str()), cx);
  return p;
}

void AddAddresses(InternetAddressList* list, std::vector<PersonSpec>& out, ReadContext& cx) {
  if (list == nullptr) return;
  int n = internet_address_list_length(list);
  for (int i = 0; i < n; ++i) {
    InternetAddress* ia = internet_address_list_get_address(list, i);
    if (INTERNET_ADDRESS_IS_GROUP(ia)) {
      AddAddresses(internet_address_group_get_members(INTERNET_ADDRESS_GROUP(ia)), out, cx);
      continue;
    }
    const char* addr = internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(ia));
    const char* name = internet_address_get_name(ia);
    std::string a = addr ? text::Trim(addr) : "";
    if (a.empty()) {
      ++cx.skipped;
      continue;
    }
    out.push_back(Person(a, name ? name : "", cx));
  }
}

double ToSerial(GDateTime* when) {
  if (when == nullptr) return kUnsetDate;
  GDateTime* utc = g_date_time_to_utc(when);
  double serial = MakeDate(g_date_time_get_year(utc), g_date_time_get_month(utc),
                           g_date_time_get_day_of_month(utc), g_date_time_get_hour(utc),
                           g_date_time_get_minute(utc), g_date_time_get_second(utc));
  g_date_time_unref(utc);
  return serial;
}

// GMime knows zone names ("CST") only in capitals and takes an unknown one for UTC.
double DateOf(const std::string& raw) {
  std::string date = text::Trim(OneLine(raw.c_str()));
  if (date.empty()) return kUnsetDate;
  size_t last = date.rfind(' ');
  std::string zone = last == std::string::npos ? "" : date.substr(last + 1);
  if (!zone.empty() && std::all_of(zone.begin(), zone.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
      })) {
    date = date.substr(0, last + 1) + text::UCase(zone);
  }
  GDateTime* when = g_mime_utils_header_decode_date(date.c_str());
  double serial = ToSerial(when);
  if (when != nullptr) g_date_time_unref(when);
  return serial;
}

std::string MimeType(GMimeObject* o) {
  GString_ t(g_mime_content_type_get_mime_type(g_mime_object_get_content_type(o)));
  return t ? text::LCase(t.get()) : "";
}

std::string DecodedBytes(GMimePart* part) {
  GMimeDataWrapper* content = g_mime_part_get_content(part);
  if (content == nullptr) return "";
  GRef<GMimeStream> sink(g_mime_stream_mem_new());
  g_mime_data_wrapper_write_to_stream(content, sink.get());
  GByteArray* bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(sink.get()));
  return std::string(reinterpret_cast<const char*>(bytes->data), bytes->len);
}

int64_t DecodedSize(GMimePart* part) {
  GMimeDataWrapper* content = g_mime_part_get_content(part);
  if (content == nullptr) return 0;
  GRef<GMimeStream> sink(g_mime_stream_null_new());
  ssize_t n = g_mime_data_wrapper_write_to_stream(content, sink.get());
  return n < 0 ? 0 : static_cast<int64_t>(n);
}

// A text part's content as UTF-8: its own charset, else the one the mail declares
// elsewhere, else Windows-1252 for 8-bit bytes that are not UTF-8.
std::string PartText(GMimeObject* o, ReadContext& cx) {
  if (o == nullptr || !GMIME_IS_PART(o)) return "";
  const char* charset = g_mime_object_get_content_type_parameter(o, "charset");
  bool fell_back = false;
  std::string out =
      DecodeText(DecodedBytes(GMIME_PART(o)), charset ? charset : cx.charset, &fell_back);
  cx.fell_back = cx.fell_back || fell_back;
  return out;
}

bool HasMailHeaders(GMimeMessage* m) {
  GMimeHeaderList* headers = g_mime_object_get_header_list(GMIME_OBJECT(m));
  for (const char* h : {"From", "To", "Subject", "Date", "Message-ID", "Sender", "Cc"}) {
    if (g_mime_header_list_contains(headers, h)) return true;
  }
  return false;
}

// As a mail client shows them: parts marked as attachments, named parts not marked
// inline, and unnamed non-text parts that are not images referenced by the body.
bool IsAttachment(GMimePart* part, const char* name, const std::string& type) {
  if (g_mime_part_is_attachment(part)) return true;
  const char* disposition = g_mime_object_get_disposition(GMIME_OBJECT(part));
  bool inline_part = disposition != nullptr && text::EqualsNoCase(disposition, "inline");
  if (name != nullptr && !inline_part) return true;
  return disposition == nullptr && !text::StartsWith(type, "text/") &&
         g_mime_object_get_content_id(GMIME_OBJECT(part)) == nullptr;
}

std::string RawHeader(GMimeObject* o, const char* name) {
  GMimeHeader* h = g_mime_header_list_get_header(g_mime_object_get_header_list(o), name);
  const char* raw = h ? g_mime_header_get_raw_value(h) : nullptr;
  return raw ? OneLine(raw) : "";
}

// Splits an address header on `separators` outside quotes and angle brackets.
std::vector<std::string> SplitAddresses(const std::string& value, const char* separators) {
  std::vector<std::string> parts(1);
  bool quoted = false;
  int angle = 0;
  for (size_t i = 0; i < value.size(); ++i) {
    char c = value[i];
    if (c == '\\' && quoted && i + 1 < value.size()) {
      parts.back() += value.substr(i++, 2);
      continue;
    }
    if (c == '"') quoted = !quoted;
    if (!quoted && c == '<') ++angle;
    if (!quoted && c == '>' && angle > 0) --angle;
    if (!quoted && angle == 0 && std::strchr(separators, c) != nullptr) {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

// Exchange distinguished names hold spaces, which RFC 5322 parsers do not accept in an
// address; headers that carry one are split here, each part "Name <address>" or a bare
// address. Outlook separates recipients with semicolons, which RFC 5322 reserves for
// ending a group: a header without a group gets them read as commas.
void ReadAddresses(GMimeMessage* m, const char* header, std::vector<PersonSpec>& out,
                   ReadContext& cx) {
  std::string raw = RawHeader(GMIME_OBJECT(m), header);
  if (text::Trim(raw).empty()) return;
  bool exchange = text::FindNoCase(raw, "</o=") != std::string::npos;
  bool group = SplitAddresses(raw, ":").size() > 1;
  if (!exchange) {
    // Each entry alone: GMime reads a bare local address ("bob") as the display name of
    // the address after it.
    std::vector<std::string> parts =
        group ? std::vector<std::string>{raw} : SplitAddresses(raw, ",;");
    for (const std::string& part : parts) {
      if (text::Trim(part).empty()) continue;
      GRef<InternetAddressList> list(internet_address_list_parse(cx.options, part.c_str()));
      AddAddresses(list.get(), out, cx);
    }
    return;
  }
  for (const std::string& part : SplitAddresses(raw, group ? "," : ",;")) {
    std::string s = text::Trim(part);
    if (s.empty()) continue;
    std::string name, address = s;
    size_t lt = s.rfind('<');
    if (lt != std::string::npos && s.back() == '>') {
      name = text::Trim(s.substr(0, lt));
      if (name.size() >= 2 && name.front() == '"' && name.back() == '"') {
        name = name.substr(1, name.size() - 2);
      }
      address = text::Trim(s.substr(lt + 1, s.size() - lt - 2));
    }
    if (address.empty()) {
      ++cx.skipped;
      continue;
    }
    GString_ decoded(g_mime_utils_header_decode_phrase(cx.options, name.c_str()));
    out.push_back(Person(address, decoded ? decoded.get() : name, cx));
  }
}

// The sent date: the Date header, else the newest Received header's date, else the date
// of the mbox "From " line (old mail often has only the last).
double ReadDate(GMimeMessage* m, const std::string& marker) {
  double when = DateOf(RawHeader(GMIME_OBJECT(m), "Date"));
  if (when != kUnsetDate) return when;
  std::string received = RawHeader(GMIME_OBJECT(m), "Received");
  size_t semi = received.rfind(';');
  if (semi != std::string::npos) when = DateOf(received.substr(semi + 1));
  if (when != kUnsetDate) return when;
  std::vector<std::string> words = text::Split(marker, " ");
  std::string date;
  for (size_t i = 2; i < words.size(); ++i) {
    if (!words[i].empty()) date += (date.empty() ? "" : " ") + words[i];
  }
  return DateOf(date);
}

std::string FirstCharset(GMimeObject* o) {
  if (GMIME_IS_MULTIPART(o)) {
    GMimeMultipart* mp = GMIME_MULTIPART(o);
    for (int i = 0; i < g_mime_multipart_get_count(mp); ++i) {
      std::string c = FirstCharset(g_mime_multipart_get_part(mp, i));
      if (!c.empty()) return c;
    }
    return "";
  }
  const char* c = g_mime_object_get_content_type_parameter(o, "charset");
  return c ? c : "";
}

// The first plain-text part that is neither an attachment nor inside a forwarded
// message, wherever multipart/related or /alternative put it.
GMimeObject* PlainTextPart(GMimeObject* o) {
  if (GMIME_IS_MULTIPART(o)) {
    GMimeMultipart* mp = GMIME_MULTIPART(o);
    for (int i = 0; i < g_mime_multipart_get_count(mp); ++i) {
      if (GMimeObject* found = PlainTextPart(g_mime_multipart_get_part(mp, i))) return found;
    }
    return nullptr;
  }
  if (!GMIME_IS_PART(o) || MimeType(o) != "text/plain") return nullptr;
  GMimePart* part = GMIME_PART(o);
  return IsAttachment(part, g_mime_part_get_filename(part), "text/plain") ? nullptr : o;
}

int64_t SerializedSize(GMimeObject* o) {
  GRef<GMimeStream> sink(g_mime_stream_null_new());
  ssize_t n = g_mime_object_write_to_stream(o, nullptr, sink.get());
  return n < 0 ? 0 : static_cast<int64_t>(n);
}

// Attachments in document order. A forwarded message is one attachment (named by its
// file name, else its subject); its own parts are its, not the outer mail's.
void CollectParts(GMimeObject* o, ItemSpec& item, ReadContext& cx) {
  if (GMIME_IS_MULTIPART(o)) {
    GMimeMultipart* mp = GMIME_MULTIPART(o);
    for (int i = 0; i < g_mime_multipart_get_count(mp); ++i) {
      CollectParts(g_mime_multipart_get_part(mp, i), item, cx);
    }
    return;
  }
  if (GMIME_IS_MESSAGE_PART(o)) {
    GMimeMessage* inner = g_mime_message_part_get_message(GMIME_MESSAGE_PART(o));
    const char* file = g_mime_object_get_content_disposition_parameter(o, "filename");
    if (file == nullptr) file = g_mime_object_get_content_type_parameter(o, "name");
    const char* subject = inner ? g_mime_message_get_subject(inner) : nullptr;
    std::string name = file ? file : subject && *subject ? OneLine(subject) : "forwarded message";
    item.attachments.push_back(
        {Utf8(name, cx), MimeType(o), inner ? SerializedSize(GMIME_OBJECT(inner)) : 0});
    return;
  }
  if (!GMIME_IS_PART(o)) return;
  GMimePart* part = GMIME_PART(o);
  std::string type = MimeType(o);
  if (type == "text/calendar" && item.item_class == ItemClass::kMail) {
    const char* method = g_mime_object_get_content_type_parameter(o, "method");
    if (method && text::EqualsNoCase(method, "REQUEST")) {
      item.item_class = ItemClass::kMeeting;
      item.message_class = "IPM.Schedule.Meeting.Request";
    }
  }
  const char* name = g_mime_part_get_filename(part);
  if (!IsAttachment(part, name, type)) return;
  item.attachments.push_back({name ? Utf8(name, cx) : "attachment", type, DecodedSize(part)});
}

ItemSpec ToItem(GMimeMessage* m, const std::string& marker, ReadContext& cx) {
  ItemSpec item;
  item.item_class = ItemClass::kMail;
  GMimeObject* top = g_mime_message_get_mime_part(m);
  cx.charset = top ? FirstCharset(top) : "";
  const char* subject = g_mime_message_get_subject(m);
  item.subject = subject ? Utf8(OneLine(subject), cx) : "";
  std::vector<PersonSpec> from;
  ReadAddresses(m, "From", from, cx);
  if (from.empty()) ReadAddresses(m, "Sender", from, cx);
  if (!from.empty()) item.from = from.front();
  ReadAddresses(m, "To", item.to, cx);
  ReadAddresses(m, "Cc", item.cc, cx);
  ReadAddresses(m, "Bcc", item.bcc, cx);
  item.time = ReadDate(m, marker);
  // The sensitivity mail gateways and Outlook write (RFC 2156's "Sensitivity" header).
  std::string sensitivity = text::LCase(RawHeader(GMIME_OBJECT(m), "Sensitivity"));
  if (sensitivity == "personal") item.sensitivity = kOlPersonal;
  if (sensitivity == "private") item.sensitivity = kOlPrivate;
  if (sensitivity == "company-confidential") item.sensitivity = kOlConfidential;
  GMimeObject* plain = top ? PlainTextPart(top) : nullptr;
  item.body = PartText(plain ? plain : g_mime_message_get_body(m), cx);

  if (top != nullptr && MimeType(top) == "multipart/report") {
    item.item_class = ItemClass::kReport;
    item.message_class = "REPORT.IPM.Note.NDR";
  }
  if (top != nullptr) CollectParts(top, item, cx);
  return item;
}

// A byte-order mark some exporters write is not part of the mail.
std::string WithoutBom(const std::string& bytes) {
  return bytes.compare(0, 3, "\xEF\xBB\xBF") == 0 ? bytes.substr(3) : bytes;
}

// Parser options shared by every message: 8-bit header text that is not UTF-8 is read as
// Windows-1252.
GMimeParserOptions* Options() {
  static GMimeParserOptions* options = [] {
    GMimeParserOptions* o = g_mime_parser_options_new();
    const char* charsets[] = {"UTF-8", "windows-1252", nullptr};
    g_mime_parser_options_set_fallback_charsets(o, charsets);
    return o;
  }();
  return options;
}

// One message parsed from its text; nullptr when GMime finds no message.
GRef<GMimeMessage> Parse(const std::string& bytes) {
  GRef<GMimeStream> stream(g_mime_stream_mem_new_with_buffer(bytes.data(), bytes.size()));
  GRef<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
  return GRef<GMimeMessage>(g_mime_parser_construct_message(parser.get(), Options()));
}

bool LooksLikeHeader(std::string_view line) {
  size_t colon = line.find(':');
  if (colon == 0 || colon == std::string_view::npos) return false;
  for (size_t i = 0; i < colon; ++i) {
    unsigned char c = static_cast<unsigned char>(line[i]);
    if (c <= 32 || c >= 127) return false;
  }
  return true;
}

// "From -", "From sender@host", "From - Fri Aug 05 10:57:20 2016": one token, or a
// token and a date. "From Russia with love" in a body is neither.
bool LooksLikeMarker(std::string_view line) {
  if (line.substr(0, 5) != "From ") return false;
  std::string_view rest = line.substr(5);
  while (!rest.empty() && (rest.back() == '\r' || rest.back() == ' ')) rest.remove_suffix(1);
  size_t space = rest.find(' ');
  if (space == std::string_view::npos) return true;
  return rest.find_first_of("0123456789", space) != std::string_view::npos;
}

std::string_view Bare(std::string_view l) {
  if (!l.empty() && l.back() == '\r') l.remove_suffix(1);
  return l;
}

void AddNotes(const ReadContext& cx, int fallbacks, MailReadResult& r) {
  r.skipped_addresses += cx.skipped;
  if (fallbacks > 0) {
    r.notes.push_back(std::to_string(fallbacks) +
                      (fallbacks == 1 ? " message has" : " messages have") +
                      " 8-bit text in no declared or fitting charset, read as Windows-1252");
  }
}

}  // namespace

MailReadResult ReadEml(const std::string& raw, const std::string& file) {
  InitOnce();
  GRef<GMimeMessage> message = Parse(WithoutBom(raw));
  if (!message || !HasMailHeaders(message.get())) {
    throw InputError(file, 1, "",
                     "expected a mail message: headers (From, To, Subject, Date) then a blank "
                     "line then the body");
  }
  MailReadResult r;
  ReadContext cx;
  cx.options = Options();
  r.items.push_back(ToItem(message.get(), "", cx));
  r.items.back().source_line = 1;
  AddNotes(cx, cx.fell_back ? 1 : 0, r);
  return r;
}

// Messages are split here rather than by GMime's mbox parser, which also splits at the
// unescaped "From " lines some clients leave in bodies: a "From " line separates messages
// only when it looks like a marker (see LooksLikeMarker) and a header follows. A message's
// Content-Length is honoured as GMime honours it (no marker inside the declared body)
// when the length ends at the end of the file or at the next "From " line, as a correct
// one does. Lines escaped as ">From " (mboxrd) lose one ">".
MailReadResult ReadMbox(const std::string& raw, const std::string& file) {
  InitOnce();
  std::string bytes = WithoutBom(raw);
  std::vector<std::string_view> lines;
  for (size_t pos = 0; pos < bytes.size();) {
    size_t end = bytes.find('\n', pos);
    if (end == std::string::npos) end = bytes.size();
    lines.emplace_back(bytes.data() + pos, end - pos);
    pos = end + 1;
  }
  auto offset = [&](size_t line) {
    return line < lines.size() ? static_cast<size_t>(lines[line].data() - bytes.data())
                               : bytes.size();
  };
  size_t first = 0;
  while (first < lines.size() && Bare(lines[first]).empty()) ++first;
  if (first == lines.size() || lines[first].substr(0, 5) != "From ") {
    throw InputError(file, static_cast<int>(first) + 1, "",
                     "expected an mbox file: each message after a line starting \"From \"");
  }
  // The end of the body a message's Content-Length declares, when it is a credible one.
  auto declared_end = [&](size_t marker) -> std::optional<size_t> {
    size_t i = marker + 1;
    std::optional<size_t> length;
    for (; i < lines.size() && !Bare(lines[i]).empty(); ++i) {
      std::string_view l = Bare(lines[i]);
      if (l.size() > 15 && text::EqualsNoCase(l.substr(0, 15), "content-length:")) {
        std::string digits = text::Trim(std::string(l.substr(15)));
        if (!digits.empty() && digits.size() < 12 &&
            digits.find_first_not_of("0123456789") == std::string::npos) {
          length = std::stoull(digits);
        }
      }
    }
    if (!length || i >= lines.size()) return std::nullopt;
    size_t end = offset(i + 1) + *length;
    if (end > bytes.size()) return std::nullopt;
    size_t next = end;
    while (next < bytes.size() && (bytes[next] == '\n' || bytes[next] == '\r')) ++next;
    if (next != bytes.size() && bytes.compare(next, 5, "From ") != 0) return std::nullopt;
    return end;
  };
  std::vector<size_t> starts;
  size_t body_end = 0;
  for (size_t i = first; i < lines.size(); ++i) {
    if (offset(i) < body_end) continue;
    if (LooksLikeMarker(lines[i]) && (i + 1 == lines.size() || LooksLikeHeader(lines[i + 1]))) {
      starts.push_back(i);
      body_end = declared_end(i).value_or(0);
    }
  }
  MailReadResult r;
  ReadContext cx;
  cx.options = Options();
  int fallbacks = 0;
  for (size_t m = 0; m < starts.size(); ++m) {
    size_t end = m + 1 < starts.size() ? starts[m + 1] : lines.size();
    std::string text;
    for (size_t i = starts[m] + 1; i < end; ++i) {
      std::string_view l = lines[i];
      size_t gt = l.find_first_not_of('>');
      if (gt > 0 && gt != std::string_view::npos && l.substr(gt, 5) == "From ") l.remove_prefix(1);
      text.append(l);
      text += '\n';
    }
    int line = static_cast<int>(starts[m]) + 1;
    GRef<GMimeMessage> message = Parse(text);
    if (!message || !HasMailHeaders(message.get())) {
      throw InputError(file, line, "", "the message after this \"From \" line has no mail headers");
    }
    cx.fell_back = false;
    r.items.push_back(ToItem(message.get(), std::string(Bare(lines[starts[m]])), cx));
    r.items.back().source_line = line;
    if (cx.fell_back) ++fallbacks;
  }
  AddNotes(cx, fallbacks, r);
  return r;
}

}  // namespace zintra::simtool
