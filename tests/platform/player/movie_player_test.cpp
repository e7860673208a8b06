#include "platform/player/movie_player.h"

#include <gtest/gtest.h>

namespace vantrel {}
