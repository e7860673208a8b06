#include "canvas/crop_overlay_view.h"
