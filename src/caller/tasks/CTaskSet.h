#pragma once

#include <cstdint>
#include <span>
#include <string>

// What a worker can find out about a film.
enum class TaskKind
{
    Basic,    // all that is known but black bars
    Bars,     // the picture between the black bars
    Picture,  // a picture of it
};

// A kind by its names.
struct Task
{
    TaskKind Kind;
    const char* Name;     // the option that chooses it, and its name in catalogs and results
    const char* Command;  // of the worker
};

// All kinds, in the order in which they are made.
std::span<const Task> GetTasks();
const Task& GetTask(TaskKind kind);

class CTaskSet;

// The tasks that find something in a film with pictures alone.
CTaskSet GetPictureTasks();

// Some of the kinds.
class CTaskSet
{
public:
    CTaskSet() = default;
    CTaskSet(TaskKind kind) : m_bits(GetBit(kind)) {}
    // As a catalog keeps it. Kinds that are not known are left out.
    static CTaskSet FromBits(int64_t bits);
    int64_t GetBits() const { return m_bits; }

    bool IsEmpty() const { return m_bits == 0; }
    bool Has(TaskKind kind) const { return (m_bits & GetBit(kind)) != 0; }
    CTaskSet operator|(CTaskSet other) const { return FromBits(m_bits | other.m_bits); }
    CTaskSet Without(CTaskSet other) const { return FromBits(m_bits & ~other.m_bits); }
    // Takes the first kind out. The set must have one.
    TaskKind TakeFirst();

private:
    static constexpr int64_t GetBit(TaskKind kind) { return int64_t {1} << static_cast<int>(kind); }

    int64_t m_bits = 0;
};
