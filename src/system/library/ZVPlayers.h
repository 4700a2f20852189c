#pragma once

#include "contracts/IZVVideoPlayer.h"
#include "contracts/ZVReleasePointer.h"

// Owns a player of the player library.
using ZVVideoPlayerPointer = ZVReleasePointer<IZVVideoPlayer>;

// The player library, which the first call loads.
namespace ZVPlayers
{
// Makes a player without a film. Null without the library.
ZVVideoPlayerPointer CreateVideoPlayer();
}
