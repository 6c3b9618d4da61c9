#include "tools/zintra-sim/addin_composition.h"

namespace zintra::simtool {

// The simulated process has no toolbar library, so the toolbar part is left out.
AddinParts MakeAddinParts() { return AddinParts{}; }

}  // namespace zintra::simtool
