#pragma once

#include <exception>
#include <filesystem>
#include <string>

namespace trelundo {

/// Names the file of a ledger and what went wrong with its database.
std::string describeDatabaseFailure(std::filesystem::path const& file, std::exception const& failure);

} // namespace trelundo
