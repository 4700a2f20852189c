#include "system/loader/ZVReaders.h"

#include "system/library/ZVSiblingLibraries.h"

ZVReaderPointer ZVReaders::CreateGeneric(const ZVString& name)
{
    void* const factory = ZVSiblingLibraries::Get().GetReaderFactory("CreateGenericReaderDLL");
    return ZVReaderPointer(factory == nullptr ? nullptr : reinterpret_cast<ZVCreateReaderByName*>(factory)(name));
}
