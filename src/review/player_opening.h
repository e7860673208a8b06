#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <stop_token>

#include "platform/player/player.h"

namespace vantrel {

/// Makes the player of a file that has been opened; on the main thread, without blocking.
using MakePlayer = std::function<std::unique_ptr<Player>()>;

/// Opens a file for playing; blocking, on any thread. Throws whatever keeps it from being played.
using OpenPlayer = std::function<MakePlayer(const std::filesystem::path&, const std::stop_token&)>;

/// For movies with a picture; throws what Movie::open does, and Failure where there is none.
[[nodiscard]] MakePlayer openMoviePlayer(const std::filesystem::path& path,
                                         const std::stop_token& stop);

}  // namespace vantrel
