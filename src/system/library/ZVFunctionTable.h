#pragma once

// The functions that are called in a library that is opened at run time. A room states them once, in a list of their exported
// names, and gets a table with a pointer to each, under that name and with the signature of the library's own header:
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
// How many names, each with a NUL after it, stand in front of an empty one.
constexpr int Count(const char* names)
{
    int count = 0;
    for (; *names != '\0'; ++names, ++count)
        while (*names != '\0')
            ++names;
    return count;
}

// Stores the address of each name in the library of a handle, which may be null, in the pointers from the given one on. Stops at
// the first name that is missing, and returns it; null when all were found.
const char* Bind(void* handle, const char* names, void* pointers);

// The same for a whole table.
template <class Table>
const char* BindAll(void* handle, Table& table)
{
    static_assert(sizeof(Table) == Count(Table::FunctionNames) * sizeof(void*), "a table holds its functions and nothing else");
    return Bind(handle, Table::FunctionNames, &table);
}
}
