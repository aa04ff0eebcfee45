#pragma once

#include "trelundo/platform/foundation/Result.h"

#include <exception>
#include <filesystem>
#include <stdexcept>

namespace trelundo {

/// Why a ledger's file cannot serve, as a sentence without the file's name. Trying again does not help.
struct LedgerRefusal : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Names the file of a ledger (empty: in memory) and what went wrong with it.
Error ledgerError(std::filesystem::path const& file, std::exception const& failure);

} // namespace trelundo
