#include "tools/zintra-sim/mailbox_generator.h"

#include <cstdio>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace zintra::simtool {

namespace {

struct GeneratedPerson {
  std::string name;
  std::vector<std::string> addresses;
};

std::string Address(const std::string& local, int company) {
  return local + "@company" + std::to_string(company) + ".example";
}

// "Mon, 05 Jan 2026 09:00:00 +0000" for `minutes` before 5 January 2026 08:00.
std::string DateBefore(int minutes) {
  static const char* const kDays[] = {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};
  int total = 31 * 24 * 60 + 4 * 24 * 60 + 8 * 60 - minutes;  // minutes since 1 Dec 2025
  int day = total / 1440, minute = total % 1440;
  bool december = day < 31;
  char text[64];
  std::snprintf(text, sizeof text, "%s, %02d %s %d %02d:%02d:00 +0000",
                kDays[day % 7],  // 1 December 2025 was a Monday
                december ? day + 1 : day - 30, december ? "Dec" : "Jan", december ? 2025 : 2026,
                minute / 60, minute % 60);
  return text;
}

}  // namespace

GeneratedMailbox GenerateMailbox(const std::filesystem::path& dir, int mails, int contacts,
                                 uint32_t seed) {
  std::filesystem::create_directories(dir);
  std::mt19937 random(seed);
  auto pick = [&](int n) { return static_cast<int>(random() % static_cast<uint32_t>(n)); };
  GeneratedMailbox out;
  out.user = {"Jane Doe", "jane.doe@contoso.com", ""};
  out.contacts = contacts;
  out.mails = mails;

  // One company in four has a shared domain: many contacts there.
  std::vector<GeneratedPerson> people;
  std::ofstream cards(dir / "contacts.vcf", std::ios::binary);
  for (int i = 0; i < contacts; ++i) {
    GeneratedPerson p{"Contact " + std::to_string(i), {}};
    int company = i % 4 == 0 ? i % 97 : 1000 + i;
    p.addresses.push_back(Address("contact" + std::to_string(i), company));
    if (i % 3 == 0) p.addresses.push_back(Address("c" + std::to_string(i) + ".alt", company));
    if (i % 7 == 0) p.addresses.push_back("contact" + std::to_string(i) + "@home.example");
    cards << "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:" << p.name << "\r\nN:" << i << ";Contact;;;\r\n";
    for (const std::string& a : p.addresses) cards << "EMAIL;TYPE=INTERNET:" << a << "\r\n";
    if (i % 11 == 0) cards << "CATEGORIES:Customers\r\n";
    if (i % 13 == 0) cards << "CLASS:PRIVATE\r\n";
    cards << "ORG:Company " << company << "\r\nEND:VCARD\r\n";
    people.push_back(std::move(p));
  }

  const std::string me = out.user.name + " <" + out.user.smtp + ">";
  std::ofstream mbox(dir / "mail.mbox", std::ios::binary);
  for (int i = 0; i < mails; ++i) {
    int kind = pick(100);
    // Oldest first, a few minutes apart, over the last month.
    std::string date = DateBefore((mails - i) * (40000 / (mails + 1)) + 1);
    std::string from, to, cc, list;
    auto contact = [&] {
      const GeneratedPerson& p = people[static_cast<size_t>(pick(contacts))];
      return p.name + " <" +
             p.addresses[static_cast<size_t>(pick(static_cast<int>(p.addresses.size())))] + ">";
    };
    auto stranger = [&] {
      int n = pick(contacts * 2 + 1);
      return "Stranger " + std::to_string(n) + " <" +
             Address("s" + std::to_string(n), 5000 + n % 50) + ">";
    };
    if (contacts > 0 && kind < 55) {  // from a tracked contact
      from = contact();
      to = me;
      if (kind < 10) cc = contact();
    } else if (contacts > 0 && kind < 75) {  // sent by the user
      from = me;
      to = contact();
      if (kind < 62) cc = stranger();
      ++out.sent;
    } else if (kind < 90) {  // from a stranger
      from = stranger();
      to = me;
    } else {  // a mailing list
      from = "Newsletter <news@lists.example>";
      to = "Subscribers <subscribers@lists.example>";
      list = "List-Id: <news.lists.example>\n";
    }
    std::string envelope = from.substr(from.find('<') + 1);
    envelope.pop_back();
    mbox << "From " << envelope << " Mon Jan  5 08:00:00 2026\n"
         << "From: " << from << "\nTo: " << to << "\n";
    if (!cc.empty()) mbox << "Cc: " << cc << "\n";
    mbox << list << "Subject: Message " << i << "\nDate: " << date << "\nMessage-ID: <m" << i << "."
         << seed << "@generated.example>\n";
    if (i % 17 == 0) mbox << "Sensitivity: Private\n";
    if (i % 9 == 0) {
      mbox << "MIME-Version: 1.0\nContent-Type: multipart/mixed; boundary=\"b" << i << "\"\n\n--b"
           << i << "\nContent-Type: text/plain; charset=us-ascii\n\nBody of message " << i
           << "\n\n--b" << i
           << "\nContent-Type: application/pdf; name=\"report.pdf\"\nContent-Disposition: "
              "attachment; filename=\"report.pdf\"\nContent-Transfer-Encoding: base64\n\n"
              "JVBERi0xLjQKJcfsj6IKMSAwIG9iago8PC9UeXBlL0NhdGFsb2c+PgplbmRvYmoK\n--b"
           << i << "--\n\n";
    } else {
      mbox << "\nBody of message " << i << "\n\n";
    }
  }
  return out;
}

}  // namespace zintra::simtool
