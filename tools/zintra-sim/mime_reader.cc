#include "tools/zintra-sim/mime_reader.h"

#include <gmime/gmime.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <string_view>

#include "src/core/text.h"
#include "tools/zintra-sim/input_error.h"

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

void AddAddresses(InternetAddressList* list, std::vector<PersonSpec>& out, int& skipped) {
  if (list == nullptr) return;
  int n = internet_address_list_length(list);
  for (int i = 0; i < n; ++i) {
    InternetAddress* ia = internet_address_list_get_address(list, i);
    if (INTERNET_ADDRESS_IS_GROUP(ia)) {
      AddAddresses(internet_address_group_get_members(INTERNET_ADDRESS_GROUP(ia)), out, skipped);
      continue;
    }
    const char* addr = internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(ia));
    const char* name = internet_address_get_name(ia);
    PersonSpec p;
    std::string a = addr ? addr : "";
    if (text::StartsWith(text::LCase(a), "/o=")) {
      p.exchange = a;
    } else if (a.find('@') != std::string::npos && a.front() != '@' && a.back() != '@') {
      p.smtp = a;
    } else {
      ++skipped;
      continue;
    }
    p.name = name && *name ? OneLine(name) : a;
    out.push_back(std::move(p));
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

std::string MimeType(GMimeObject* o) {
  GString_ t(g_mime_content_type_get_mime_type(g_mime_object_get_content_type(o)));
  return t ? text::LCase(t.get()) : "";
}

std::string PartText(GMimeObject* o) {
  if (o == nullptr || !GMIME_IS_TEXT_PART(o)) return "";
  GString_ t(g_mime_text_part_get_text(GMIME_TEXT_PART(o)));
  return t ? t.get() : "";
}

int64_t DecodedSize(GMimePart* part) {
  GMimeDataWrapper* content = g_mime_part_get_content(part);
  if (content == nullptr) return 0;
  GRef<GMimeStream> sink(g_mime_stream_null_new());
  ssize_t n = g_mime_data_wrapper_write_to_stream(content, sink.get());
  return n < 0 ? 0 : static_cast<int64_t>(n);
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

// Exchange distinguished names hold spaces, which RFC 5322 parsers do not accept in an
// address; headers that carry one are split here: on commas outside quotes and angle
// brackets, each part "Name <address>" or a bare address.
bool HasExchangeAddress(const char* raw) {
  return raw != nullptr && text::FindNoCase(raw, "</o=") != std::string::npos;
}

void AddRawAddresses(const char* raw, std::vector<PersonSpec>& out, int& skipped) {
  std::string value = OneLine(raw);
  std::vector<std::string> parts(1);
  bool quoted = false;
  int angle = 0;
  for (char c : value) {
    if (c == '"') quoted = !quoted;
    if (!quoted && c == '<') ++angle;
    if (!quoted && c == '>' && angle > 0) --angle;
    if (c == ',' && !quoted && angle == 0) {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  for (const std::string& part : parts) {
    if (text::Trim(part).empty()) continue;
    auto person = ParsePersonText(part);
    if (person) {
      out.push_back(*person);
    } else {
      ++skipped;
    }
  }
}

void ReadAddresses(GMimeMessage* m, const char* header, InternetAddressList* parsed,
                   std::vector<PersonSpec>& out, int& skipped) {
  const char* raw = g_mime_object_get_header(GMIME_OBJECT(m), header);
  if (HasExchangeAddress(raw)) {
    AddRawAddresses(raw, out, skipped);
  } else {
    AddAddresses(parsed, out, skipped);
  }
}

ItemSpec ToItem(GMimeMessage* m, int& skipped) {
  ItemSpec item;
  item.item_class = ItemClass::kMail;
  const char* subject = g_mime_message_get_subject(m);
  item.subject = subject ? OneLine(subject) : "";
  std::vector<PersonSpec> from;
  ReadAddresses(m, "From", g_mime_message_get_from(m), from, skipped);
  if (from.empty()) ReadAddresses(m, "Sender", g_mime_message_get_sender(m), from, skipped);
  if (!from.empty()) item.from = from.front();
  ReadAddresses(m, "To", g_mime_message_get_to(m), item.to, skipped);
  ReadAddresses(m, "Cc", g_mime_message_get_cc(m), item.cc, skipped);
  ReadAddresses(m, "Bcc", g_mime_message_get_bcc(m), item.bcc, skipped);
  item.time = ToSerial(g_mime_message_get_date(m));
  item.body = PartText(g_mime_message_get_body(m));

  GMimeObject* top = g_mime_message_get_mime_part(m);
  if (top != nullptr && MimeType(top) == "multipart/report") {
    item.item_class = ItemClass::kReport;
    item.message_class = "REPORT.IPM.Note.NDR";
  }
  std::unique_ptr<GMimePartIter, IterFree> iter(g_mime_part_iter_new(GMIME_OBJECT(m)));
  if (g_mime_part_iter_is_valid(iter.get())) {
    do {
      GMimeObject* current = g_mime_part_iter_get_current(iter.get());
      if (!GMIME_IS_PART(current)) continue;
      GMimePart* part = GMIME_PART(current);
      std::string type = MimeType(current);
      if (type == "text/calendar" && item.item_class == ItemClass::kMail) {
        GMimeContentType* ct = g_mime_object_get_content_type(current);
        const char* method = g_mime_content_type_get_parameter(ct, "method");
        if (method && text::EqualsNoCase(method, "REQUEST")) {
          item.item_class = ItemClass::kMeeting;
          item.message_class = "IPM.Schedule.Meeting.Request";
        }
      }
      const char* name = g_mime_part_get_filename(part);
      if (!IsAttachment(part, name, type)) continue;
      item.attachments.push_back({name ? name : "attachment", type, DecodedSize(part)});
    } while (g_mime_part_iter_next(iter.get()));
  }
  return item;
}

// A byte-order mark some exporters write is not part of the mail.
std::string WithoutBom(const std::string& bytes) {
  return bytes.compare(0, 3, "\xEF\xBB\xBF") == 0 ? bytes.substr(3) : bytes;
}

// One message parsed from its text; nullptr when GMime finds no message.
GRef<GMimeMessage> Parse(const std::string& bytes) {
  GRef<GMimeStream> stream(g_mime_stream_mem_new_with_buffer(bytes.data(), bytes.size()));
  GRef<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
  return GRef<GMimeMessage>(g_mime_parser_construct_message(parser.get(), nullptr));
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
  r.items.push_back(ToItem(message.get(), r.skipped_addresses));
  r.items.back().source_line = 1;
  return r;
}

// Messages are split here rather than by the MIME parser: a "From " line separates
// messages only when it looks like a marker (see LooksLikeMarker) and a header follows,
// so the unescaped "From " lines that some clients leave in bodies stay in the body.
// Lines escaped as ">From " (mboxrd) lose one ">".
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
  auto bare = [](std::string_view l) {
    if (!l.empty() && l.back() == '\r') l.remove_suffix(1);
    return l;
  };
  size_t first = 0;
  while (first < lines.size() && bare(lines[first]).empty()) ++first;
  if (first == lines.size() || lines[first].substr(0, 5) != "From ") {
    throw InputError(file, static_cast<int>(first) + 1, "",
                     "expected an mbox file: each message after a line starting \"From \"");
  }
  std::vector<size_t> starts;
  for (size_t i = first; i < lines.size(); ++i) {
    if (LooksLikeMarker(lines[i]) && (i + 1 == lines.size() || LooksLikeHeader(lines[i + 1]))) {
      starts.push_back(i);
    }
  }
  MailReadResult r;
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
    r.items.push_back(ToItem(message.get(), r.skipped_addresses));
    r.items.back().source_line = line;
  }
  return r;
}

}  // namespace zintra::simtool
