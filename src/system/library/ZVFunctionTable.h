#pragma once

// The functions that are used of a library that is opened at run time. They are stated once, in a list of their exported names,
// and become a table with a pointer to each, with its name and with the signature of the library's own header:
//
//   #define ZV_ZLIB_FUNCTIONS(function) function(inflate) function(inflateEnd)
//   ZV_DEFINE_FUNCTION_TABLE(CZFunctions, ZV_ZLIB_FUNCTIONS);
//
//   CZFunctions zlib;
//   if (library.BindAll(zlib))
//       zlib.inflateEnd(&stream);
#define ZV_FUNCTION_POINTER(name) decltype(&::name) name = nullptr;
#define ZV_FUNCTION_NAME(name) #name "\0"
#define ZV_DEFINE_FUNCTION_TABLE(Table, list)                                                                                    \
    struct Table                                                                                                                 \
    {                                                                                                                            \
        /* The names of the functions, a NUL after each. */                                                                      \
        static constexpr char FunctionNames[] = list(ZV_FUNCTION_NAME);                                                          \
        list(ZV_FUNCTION_POINTER)                                                                                                \
    }

namespace ZVFunctionTable
{
// The number of names in a list in which a NUL ends each name, and an empty name ends the list.
constexpr int Count(const char* names)
{
    int count = 0;
    for (; *names != '\0'; ++names, ++count)
        while (*names != '\0')
            ++names;
    return count;
}

// Looks up each name in a library and stores the addresses in the pointers, one after the other. Stops at the first name that is
// missing and returns it; null when all were found. With a null handle the first name is missing.
const char* Bind(void* handle, const char* names, void* pointers);

// The same for a whole table.
template <class Table>
const char* BindAll(void* handle, Table& table)
{
    static_assert(sizeof(Table) == Count(Table::FunctionNames) * sizeof(void*), "a table holds its functions and nothing else");
    return Bind(handle, Table::FunctionNames, &table);
}
}
