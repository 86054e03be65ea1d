#include "Tool/SizeChecks.h"
