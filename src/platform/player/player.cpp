#include "platform/player/player.h"

#include "moc_player.cpp"
