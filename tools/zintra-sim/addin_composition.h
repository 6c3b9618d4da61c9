// AddinComposition: the parts zintra-sim's add-in is made of, as the composition root
// hands them to ZintraAddinApp (AddinParts). Contact tracking and
// folder monitoring join here as add-in parts once they are parts of the add-in.
#pragma once

#include "src/addin/addin_part.h"

namespace zintra::simtool {

AddinParts MakeAddinParts();

}  // namespace zintra::simtool
