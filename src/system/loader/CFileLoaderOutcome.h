#pragma once

// How a step of a load ended, and with it the load.
enum class CFileLoaderOutcome
{
    Success,        // also of a load that was cancelled after its resource had opened
    NotBegun,       // it was cancelled before
    NoMemory,       // an allocation failed
    NoInternet,     // an internet name where internet access is off
    NoRegularFile,  // a folder, a pipe, a device
    NotOpened,
    NotModified,
    NotResumable,  // the bytes cannot follow those that the sink has
    NoStart,       // the place where reading should begin was out of reach
    TooLarge,
    GrewTooLarge,  // the same, found out after everything allowed had come
    NotMoved,      // reading or writing failed on the way
    NotValid,
    EndedEarly,
    NothingCame,
    NotWritten,  // the sink lost what it was given
    NotInflated,
};
