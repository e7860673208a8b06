#include "canvas/video_canvas_view.h"
