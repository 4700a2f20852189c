#include "system/library/ZVPlayers.h"

#include "system/library/ZVSiblingLibraries.h"

ZVVideoPlayerPointer ZVPlayers::CreateVideoPlayer()
{
    auto* const library = ZVSiblingLibraries::Get().LoadInterface<IZVPlayerLibrary>(ZVSibling::Player);
    return ZVVideoPlayerPointer(library == nullptr ? nullptr : library->CreateVideoPlayer());
}
