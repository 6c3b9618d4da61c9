#include "tests/zintra_sim/report_check.h"

#include <fstream>
#include <map>
#include <set>

#include <nlohmann/json.hpp>

namespace zintra::simtool::testing_support {

namespace {

using nlohmann::json;

json ReadJson(const std::string& file) {
  std::ifstream in(file);
  return json::parse(in);
}

struct Copies {
  int logged = 0, shared = 0;
};

const json& Items(const json& folder) {
  static const json kNone = json::array();
  return folder.contains("items") ? folder["items"] : kNone;
}

// The originals by subject, the copies made of each, each contact's addresses by name.
struct Profile {
  std::map<std::string, const json*> originals;
  std::map<std::string, Copies> copies;
  std::map<std::string, std::set<std::string>> contacts;
};

void Walk(const json& folders, Profile& p) {
  for (const json& f : folders) {
    for (const json& item : Items(f)) {
      std::string subject = item.value("subject", "");
      if (item.contains("copy_of")) {
        Copies& c = p.copies[item["copy_of"].value("subject", "")];
        ++(item["copy_of"].value("kind", "") == "shared" ? c.shared : c.logged);
      } else if (item.value("class", "") == "contact") {
        for (const json& e : item.value("emails", json::array())) {
          p.contacts[subject].insert(e.get<std::string>());
        }
      } else {
        p.originals[subject] = &item;
      }
    }
    if (f.contains("folders")) Walk(f["folders"], p);
  }
}

// The addresses an item names: "Name <address>" of its sender and recipients.
std::set<std::string> AddressesOf(const json& item) {
  std::set<std::string> out;
  auto add = [&](const std::string& person) {
    size_t open = person.rfind('<');
    out.insert(open == std::string::npos ? person
                                         : person.substr(open + 1, person.size() - open - 2));
  };
  if (item.contains("from")) add(item["from"].get<std::string>());
  for (const json& r : item.value("recipients", json::array())) add(r.get<std::string>());
  return out;
}

// "Ann Lee (ann@fabrikam.com)" must be a contact holding that address, which the item
// names; "Wingtip Toys (*@wingtiptoys.com)" a contact of that domain, which the item
// names; "(link)" is not checked here.
std::string CheckContact(const std::string& shown, const json& item, const Profile& p) {
  size_t open = shown.rfind(" (");
  if (open == std::string::npos || shown.back() != ')') return "not \"name (how)\"";
  std::string name = shown.substr(0, open);
  std::string how = shown.substr(open + 2, shown.size() - open - 3);
  if (how == "link") return "";
  auto contact = p.contacts.find(name);
  if (contact == p.contacts.end()) return "no such contact";
  std::set<std::string> named = AddressesOf(item);
  if (how.rfind("*@", 0) == 0) {
    std::string domain = how.substr(1);
    auto in = [&](const std::set<std::string>& list) {
      for (const std::string& a : list) {
        if (a.size() > domain.size() &&
            a.compare(a.size() - domain.size(), domain.size(), domain) == 0)
          return true;
      }
      return false;
    };
    if (!in(contact->second)) return "the contact has no address at that domain";
    if (!in(named)) return "the item names no address at that domain";
    return "";
  }
  if (contact->second.count(how) == 0) return "the contact has no such address";
  if (named.count(how) == 0) return "the item does not name that address";
  return "";
}

}  // namespace

std::vector<std::string> ReportMismatches(const std::string& results_dir) {
  json profile = ReadJson(results_dir + "/profile.json");
  json report = ReadJson(results_dir + "/report.json");
  Profile p;
  for (const json& store : profile["stores"]) Walk(store["folders"], p);

  std::vector<std::string> out;
  std::set<std::string> reported;
  for (const json& row : report["items"]) {
    std::string subject = row.value("subject", "");
    std::string outcome = row.value("outcome", "");
    if (outcome == "copy") continue;
    auto it = p.originals.find(subject);
    if (it == p.originals.end()) {
      out.push_back(subject + ": in the report, not in the profile");
      continue;
    }
    if (!reported.insert(subject).second) out.push_back(subject + ": reported twice");
    const json& marks = (*it->second)["marks"];
    std::string logged = marks.value("Zintra Logged", "");
    bool marked = logged == "True" || logged == "true";
    if ((outcome == "logged") != marked) {
      out.push_back(subject + ": report says " + outcome + ", Zintra Logged is \"" + logged + "\"");
    }
    const Copies& made = p.copies[subject];
    if (row.value("logged_copies", -1) != made.logged ||
        row.value("shared_copies", -1) != made.shared) {
      out.push_back(subject + ": report counts " + row["logged_copies"].dump() + "/" +
                    row["shared_copies"].dump() + " copies, the profile holds " +
                    std::to_string(made.logged) + "/" + std::to_string(made.shared));
    }
    for (const json& c : row.value("contacts", json::array())) {
      std::string why = CheckContact(c.get<std::string>(), *it->second, p);
      if (!why.empty())
        out.push_back(subject + ": report names " + c.get<std::string>() + ": " + why);
    }
    if (outcome == "screened" && row.value("reason", "").empty()) {
      out.push_back(subject + ": screened without a reason");
    }
  }
  for (const auto& [subject, item] : p.originals) {
    if (reported.count(subject) == 0) out.push_back(subject + ": in the profile, not reported");
  }
  return out;
}

void SetLogSettings(Scenario& s, bool largest) {
  const std::string key = "HKCU\\Software\\Brellow\\Zintra\\Logging";
  auto dword = [&](const char* name, uint32_t value) {
    RegValueSpec v;
    v.key = key;
    v.name = name;
    v.dword = value;
    s.registry.values.push_back(v);
  };
  dword("LogLevel", largest ? 3 : 0);
  dword("MaxLogSizeKB", largest ? 32767 : 1);
  dword("ErrorReporting", largest ? 1 : 0);
}

}  // namespace zintra::simtool::testing_support
