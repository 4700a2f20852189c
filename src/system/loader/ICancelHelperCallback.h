#pragma once

// Hears from a ZVCancelHelper when it is cancelled.
class ICancelHelperCallback
{
public:
    // Called on the thread that cancels, with the helper locked. It must be quick and must not call the helper.
    virtual void OnCancel() = 0;

protected:
    ~ICancelHelperCallback() = default;
};
