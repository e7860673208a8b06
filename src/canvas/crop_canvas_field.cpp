#include "canvas/crop_canvas_field.h"
