#include "controls/crop_panel.h"
