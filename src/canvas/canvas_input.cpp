#include "canvas/canvas_input.h"
