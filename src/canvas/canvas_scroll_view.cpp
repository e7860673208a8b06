#include "canvas/canvas_scroll_view.h"
