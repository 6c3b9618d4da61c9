#include "src/a/a.h"
#include "src/c/c2.h"
