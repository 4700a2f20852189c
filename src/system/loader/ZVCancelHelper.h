#pragma once

#include "system/thread/ZVCriticalSection.h"

#include <atomic>

class ICancelHelperCallback;

// A wish to stop, which any thread may set and which stays until it is cleared, with the one who has to hear of it at once.
// Several loads, one behind the other, may share one.
class ZVCancelHelper
{
public:
    ZVCancelHelper() = default;
    ZVCancelHelper(const ZVCancelHelper&) = delete;
    ZVCancelHelper& operator=(const ZVCancelHelper&) = delete;

    // Sets the flag and tells the callback, if one is attached.
    void Cancel();
    bool IsCancelled() const { return m_flag; }
    void Clear() { m_flag = false; }

    // The callback to tell, in the place of the one before; it is not told of what came earlier. Once Detach returns it is not
    // called any more. Detach leaves another's callback alone.
    void Attach(ICancelHelperCallback& callback);
    void Detach(const ICancelHelperCallback& callback);

private:
    std::atomic<bool> m_flag = false;
    ZVCriticalSection m_lock;
    ICancelHelperCallback* m_callback = nullptr;
};
