// The name of the add-in's command bar in every explorer and inspector window: the
// toolbar declares it, and a hooked inspector finds its buttons by it.
#pragma once

namespace zintra {

inline constexpr char kZintraBarName[] = "Zintra";

}  // namespace zintra
