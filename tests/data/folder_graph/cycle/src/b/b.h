#include "src/a/a.h"
#include "src/d/d.h"
