#include "Purchase.h"

extern "C" int buy(char const* catalogue) { return buyFirstPlan(catalogue); }
