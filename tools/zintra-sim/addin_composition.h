// AddinComposition: the parts zintra-sim's add-in is made of, as the composition root
// hands them to ZintraAddinApp (AddinParts): contact tracking and folder monitoring.
#pragma once

#include "src/addin/addin_part.h"

namespace zintra::simtool {

AddinParts MakeAddinParts();

}  // namespace zintra::simtool
