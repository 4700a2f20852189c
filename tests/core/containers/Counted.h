#pragma once

// An element that counts how many of its kind are alive, so that a leaked or doubly destroyed one shows.
struct Counted
{
    explicit Counted(int value = 0) : Value(value) { ++Alive; }
    Counted(const Counted& other) : Value(other.Value) { ++Alive; }
    Counted& operator=(const Counted&) = default;
    ~Counted() { --Alive; }
    friend bool operator==(const Counted&, const Counted&) = default;

    static inline int Alive = 0;
    int Value;
};
