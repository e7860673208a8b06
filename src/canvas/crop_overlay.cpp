#include "canvas/crop_overlay.h"
