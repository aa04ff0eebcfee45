#pragma once

/// Opens a paywall without a display, buys its first plan from the StoreKit configuration in a file, and
/// prints what a host is told. Returns a program's status.
int buyFirstPlan(char const* catalogue);
