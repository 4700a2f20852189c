#pragma once

#include "core/string/ZVString.h"
#include "system/library/ZVFunctionTable.h"

// A shared library that is opened at run time, and unloaded by the destructor. A library may export "Attach", which is called
// after each load with a number that no other load gets, and "Detach", which is called before each unload.
class ZVLoadLibrary
{
public:
    // Every negative value of logFailure means that a failure is logged.
    static constexpr int32_t LogFailure = -1;

    ZVLoadLibrary() = default;
    ~ZVLoadLibrary() { Unload(); }
    ZVLoadLibrary(const ZVLoadLibrary&) = delete;
    ZVLoadLibrary& operator=(const ZVLoadLibrary&) = delete;

    // Unloads what is loaded and opens the library at a path; a name without a slash is looked for where the system keeps its
    // libraries. Symbols are bound when they are first used, and the code stays mapped after the unload. A failure is always
    // printed to standard output. mode is for other platforms.
    bool Load(const ZVString& path, int32_t logFailure = LogFailure, int32_t mode = 0);
    // Closes the library; without one nothing happens.
    void Unload();
    bool IsLoaded() const { return m_handle != nullptr; }

    // The address of an exported symbol, or null.
    void* GetSymbol(const char* name) const;
    // The same for a function of a known type.
    template <class Function>
    Function* GetFunction(const char* name) const
    {
        return reinterpret_cast<Function*>(GetSymbol(name));
    }

    // Fills a table of ZV_DEFINE_FUNCTION_TABLE in its order, up to the first function that the library does not have. Returns
    // the name of that function, or null when all are there.
    template <class Table>
    const char* BindAll(Table& table) const
    {
        return ZVFunctionTable::BindAll(m_handle, table);
    }

private:
    void* m_handle = nullptr;
};
