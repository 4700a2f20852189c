#pragma once

#include "contracts/IZVImage.h"

// The image library. It has no state: the pictures know nothing of it or of each other.
class CImageLibrary final : public IZVImageLibrary
{
public:
    // Binds the tools library that the process has loaded, for the log lines. The flag means nothing here.
    void Initialize(int32_t flag) override;
    IZVImage* CreateImage() override;
};
