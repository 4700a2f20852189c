#pragma once

#include <csetjmp>
#include <cstdio>

// The way out of a C library that demands that its error function does not return. The calls are made in steps, and an error ends
// the step that it is in.
//
// A step and the functions that the library calls back in it are left by a jump: they own nothing that a destructor would free,
// and everything that they change is outside them.
class CErrorJump
{
public:
    // Runs a step. False if it was left.
    template <class Step>
    __attribute__((noinline)) bool Run(const Step& step)
    {
        if (setjmp(m_return) != 0)
            return false;
        step();
        return true;
    }

    // Leaves the step that runs.
    [[noreturn]] void Leave(const char* message) noexcept
    {
        snprintf(m_message, sizeof m_message, "%s", message);
        longjmp(m_return, 1);
    }

    // Why a step was left.
    const char* GetMessage() const { return m_message; }

private:
    jmp_buf m_return;
    // Longer ones are cut; those of the libraries have at most 200 characters.
    char m_message[256] = "";
};
