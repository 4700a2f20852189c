#include "system/loader/ZVCancelHelper.h"

#include "system/loader/ICancelHelperCallback.h"

void ZVCancelHelper::Cancel()
{
    const ZVCriticalSectionLock lock(m_lock);
    m_flag = true;
    if (m_callback != nullptr)
        m_callback->OnCancel();
}

void ZVCancelHelper::Attach(ICancelHelperCallback& callback)
{
    const ZVCriticalSectionLock lock(m_lock);
    m_callback = &callback;
}

void ZVCancelHelper::Detach(const ICancelHelperCallback& callback)
{
    const ZVCriticalSectionLock lock(m_lock);
    if (m_callback == &callback)
        m_callback = nullptr;
}
