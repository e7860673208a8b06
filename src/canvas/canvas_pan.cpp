#include "canvas/canvas_pan.h"
