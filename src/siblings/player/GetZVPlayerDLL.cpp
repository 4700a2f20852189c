// The entry point of the library.

#include "siblings/player/CVideoPlayer.h"
#include "system/library/ZVToolsBinding.h"

#include <new>

namespace
{
class PlayerLibrary final : public IZVPlayerLibrary
{
public:
    // The flag means nothing here.
    void Initialize(int32_t) override { ZVToolsBinding::Bind(); }
    IZVVideoPlayer* CreateVideoPlayer() override { return new (std::nothrow) CVideoPlayer(); }
};

constinit PlayerLibrary s_library;
}

extern "C" __attribute__((visibility("default"))) IZVSiblingInterface* GetZVPlayerDLL()
{
    return &s_library;
}
