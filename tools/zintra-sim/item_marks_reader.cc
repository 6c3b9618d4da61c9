// Reading preset marks, apart from applying them, so that the scenario reader needs
// nothing of the simulated host.
#include "src/logging/zintra_utils.h"
#include "tools/zintra-sim/item_marks.h"
#include "tools/zintra-sim/scenario_fields.h"

namespace zintra::simtool {

PresetMarks ReadPresetMarks(const JsonNode& n) {
  n.OnlyKeys({kPropZintraLastAudited, "logged_copies", "shared_copies", "store_ids", "journal_type",
              "owner", "ownership"});
  PresetMarks p;
  if (auto t = n.Get(kPropZintraLastAudited)) p.last_audited = ReadTime(*t);
  if (auto l = n.Get("logged_copies")) p.logged_copies = l->AsStrings();
  if (auto s = n.Get("shared_copies")) p.shared_copies = s->AsStrings();
  p.store_ids = n.Bool("store_ids", true);
  if (auto j = n.Get("journal_type")) p.journal_type = j->AsString();
  if (auto o = n.Get("owner")) p.owner = o->AsString();
  if (auto o = n.Get("ownership")) {
    std::string t = o->AsString();
    for (int32_t i = 0; i < 3; ++i) {
      if (t == kOwnership[i]) p.ownership = i;
    }
    if (!p.ownership) o->Fail("expected new, delegated or assigned");
  }
  return p;
}

}  // namespace zintra::simtool
