#pragma once

#include <filesystem>

namespace trelundo {

// A ledger is a file and what the database library keeps beside it. Copies of both go to the first free name
// of the form FILE.broken-1, which is returned; what fails throws a LedgerRefusal.

/// Renames a ledger.
std::filesystem::path setLedgerAside(std::filesystem::path const& file);

/// Copies a ledger, for its owner alone.
std::filesystem::path copyLedger(std::filesystem::path const& file);

} // namespace trelundo
