#include "canvas/crop_canvas_fields.h"
