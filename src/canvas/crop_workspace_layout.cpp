#include "canvas/crop_workspace_layout.h"
