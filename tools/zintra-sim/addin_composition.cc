#include "tools/zintra-sim/addin_composition.h"

#include "src/contacts_part/tracked_contacts_part.h"
#include "src/monitoring_part/monitoring_part.h"
#include "src/toolbars_part/toolbars_part.h"

namespace zintra::simtool {

AddinParts MakeAddinParts(AddinLookup addin) {
  AddinParts parts;
  parts.TrackedContacts = TrackedContactsPartFactory();
  parts.Toolbars = ToolbarsPartFactory(
      [addin = std::move(addin)](const std::shared_ptr<Folder>& folder) -> std::shared_ptr<Folder> {
        std::shared_ptr<ZintraAddinApp> app = addin ? addin() : nullptr;
        return app ? JournalFolderOfSet(TrackedContactsOf(*app), folder) : nullptr;
      });
  parts.Monitoring = MonitoringPartFactory();
  return parts;
}

}  // namespace zintra::simtool
