#include "playback/playback_controls.h"
