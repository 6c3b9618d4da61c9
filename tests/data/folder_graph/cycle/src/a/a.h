#include "src/b/b.h"
