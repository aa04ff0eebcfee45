#pragma once

namespace trelundo::test {

/// Lets one allocation fail: the `number`-th from now on, 1 being the next. A program that uses it allocates
/// through it from its start.
void failAllocation(int number);
/// Whether that allocation has come and failed.
bool hasAllocationFailed();

} // namespace trelundo::test
