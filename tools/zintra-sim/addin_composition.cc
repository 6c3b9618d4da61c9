#include "tools/zintra-sim/addin_composition.h"

#include "src/contacts_part/tracked_contacts_part.h"
#include "src/monitoring_part/monitoring_part.h"

namespace zintra::simtool {

// The simulated process has no toolbar library, so the toolbar part is left out.
AddinParts MakeAddinParts() {
  AddinParts parts;
  parts.TrackedContacts = TrackedContactsPartFactory();
  parts.Monitoring = MonitoringPartFactory();
  return parts;
}

}  // namespace zintra::simtool
