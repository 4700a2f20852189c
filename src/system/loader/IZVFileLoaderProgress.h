#pragma once

// Follows a load, on its thread.
class IZVFileLoaderProgress
{
public:
    // Asked before each block; true stops the load.
    virtual bool Poll() = 0;
    // The part of the resource that is loaded, from 0 to 1. It stays 0 while the size is not known.
    virtual void Notify(double fraction) = 0;

protected:
    ~IZVFileLoaderProgress() = default;
};
