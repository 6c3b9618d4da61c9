#include "src/d/d.h"
#include "src/a/a.h"
