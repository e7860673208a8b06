#include "canvas/crop_cursors.h"
