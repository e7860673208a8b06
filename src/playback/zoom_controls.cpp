#include "playback/zoom_controls.h"
