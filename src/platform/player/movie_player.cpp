#include "platform/player/movie_player.h"
