#pragma once

// Binds the tools library that the process has loaded to this library's copy of the code, for its log lines and the other services
// that g_pZVTools gives. Only for the product's shared libraries, in their first operation.
namespace ZVToolsBinding
{
// Without a loaded tools library nothing happens, and its services stay absent. A second call changes nothing.
void Bind();
// Gives the tools library back.
void Release();
}
