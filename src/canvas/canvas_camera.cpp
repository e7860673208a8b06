#include "canvas/canvas_camera.h"
