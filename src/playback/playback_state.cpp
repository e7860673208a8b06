#include "playback/playback_state.h"
