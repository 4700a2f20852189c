#pragma once

#include "contracts/IZVSiblingInterface.h"
#include "core/string/ZVString.h"
#include "system/library/ZVLoadLibrary.h"
#include "system/library/ZVReaderFactoryNames.h"
#include "system/library/ZVSiblingTable.h"

#include <cstdint>
#include <type_traits>

// The binding of the product's libraries: which of them are loaded, and the interface of each. Everything runs under one
// recursive mutex and may be called from any thread, except that the tools library is bound and unbound while no other thread
// runs. A library that is absent is an absent service: its load is false and its interface null.
class ZVSiblingLibraries
{
public:
    // The binding of this copy of the code. It is never destroyed; whoever loads something unloads it.
    static ZVSiblingLibraries& Get();

    ZVSiblingLibraries(const ZVSiblingLibraries&) = delete;
    ZVSiblingLibraries& operator=(const ZVSiblingLibraries&) = delete;

    // The value that every library is initialised with; 0 if none is set.
    void SetFlag(int32_t flag);

    // Loads a library and starts it; true at once when it is loaded already. It is looked for in the install folder, unless path
    // begins with "\\" or has ":\" after its first character: then path is the library's file or, with a separator at its end,
    // its folder. LoadTools also sets the process-wide tools pointer, and fails when the library cannot serve.
    bool LoadTools(const ZVString& path = {}) { return Load(ZVSibling::Tools, path); }
    bool LoadImage(const ZVString& path = {}) { return Load(ZVSibling::Image, path); }
    bool LoadReader(const ZVString& path = {}) { return Load(ZVSibling::Reader, path); }
    bool LoadDisc(const ZVString& path = {}) { return Load(ZVSibling::Disc, path); }
    bool LoadPlayer(const ZVString& path = {}) { return Load(ZVSibling::Player, path); }
    bool LoadWMFactory(const ZVString& path = {}) { return Load(ZVSibling::WMFactory, path); }
    bool LoadTelevision(const ZVString& path = {}) { return Load(ZVSibling::Television, path); }

    // Why the last LoadTools failed.
    ZVString GetToolsError() const;

    // The interface of a loaded library, or null. It belongs to the library and ends with the unload.
    void* GetInterface(ZVSibling sibling) const;
    // The same as the interface that the library has, which is derived from IZVSiblingInterface alone; the call loads the library.
    template <class Interface>
    Interface* LoadInterface(ZVSibling sibling)
    {
        static_assert(std::is_base_of_v<IZVSiblingInterface, Interface>);
        return Load(sibling, {}) ? static_cast<Interface*>(static_cast<IZVSiblingInterface*>(GetInterface(sibling))) : nullptr;
    }
    // One of the reader library's factories, each a function with parameters of its own, or null. The first call loads the
    // library and looks up the name. The function ends with the unload.
    void* GetReaderFactory(const char* name);

    // Unloads one library, or all from the last to the first, if they are loaded. Nobody may still use their interfaces.
    void Unload(ZVSibling sibling);
    void UnloadAll();

private:
    struct Slot
    {
        ZVLoadLibrary Library;
        void* Interface = nullptr;
    };

    ZVSiblingLibraries() = default;

    Slot& GetSlot(ZVSibling sibling) { return m_slots[static_cast<int32_t>(sibling)]; }
    const Slot& GetSlot(ZVSibling sibling) const { return m_slots[static_cast<int32_t>(sibling)]; }
    bool Load(ZVSibling sibling, const ZVString& path);
    void Start(const ZVSiblingLibrary& library, Slot& slot);
    void StartTools(const ZVSiblingLibrary& library, Slot& slot);

    Slot m_slots[ZVSiblingCount];
    void* m_readerFactories[ZVReaderFactoryCount] = {};
    ZVString m_toolsError;
    int32_t m_flag = 0;
};
