#pragma once

#include "contracts/IZVWMFactory.h"

// The window-manager library.
class CWMFactory final : public IZVWMFactory
{
public:
    // Binds the tools library that the process has loaded, for the log lines. The flag means nothing here.
    void Initialize(int32_t flag) override;
    _XDisplay* GetDisplay() override;
    ZVScreenRect ConvertRect(const ZVScreenRect& rect, int32_t mode) const override;
};
