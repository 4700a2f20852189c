#pragma once

#include "system/thread/ZVCriticalSection.h"

#include <atomic>

class ICancelHelperCallback;

// A request to stop, which any thread may set and which stays until it is cleared, and the one who must hear of it at once.
// Several loads may share one, one load after the other.
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

    // Sets the callback, in place of the one before. It does not hear of a cancel that came earlier, and is not called any more
    // once Detach returns. Detach leaves another's callback alone.
    void Attach(ICancelHelperCallback& callback);
    void Detach(const ICancelHelperCallback& callback);

private:
    std::atomic<bool> m_flag = false;
    ZVCriticalSection m_lock;
    ICancelHelperCallback* m_callback = nullptr;
};
