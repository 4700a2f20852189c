#pragma once

#include "system/library/ZVFunctionTable.h"

#include <dlfcn.h>

// A library of the system that is opened when it is first needed: most processes never need it and should not pay for it at their
// start. For the product's own libraries there is ZVLoadLibrary. The library stays open when the object goes.
class ZVRunTimeLibrary
{
public:
    explicit ZVRunTimeLibrary(const char* fileName) : m_handle(dlopen(fileName, RTLD_NOW | RTLD_LOCAL)) {}

    bool IsOpen() const { return m_handle != nullptr; }

    // Fills a table of ZV_DEFINE_FUNCTION_TABLE. False when the library is not open or lacks a function.
    template <class Table>
    bool BindAll(Table& table) const
    {
        return ZVFunctionTable::BindAll(m_handle, table) == nullptr;
    }

private:
    void* m_handle;
};
