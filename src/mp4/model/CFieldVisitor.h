#pragma once

#include <cstdint>
#include <type_traits>
#include <vector>

class CAtomBytes;
class CAtomTable;
class CContainerAtom;

// Whether a range of a file must lie in it whole, or may be cut at its end.
enum class CRangeEnd
{
    MustBeThere,
    MayBeCut,
};

// Goes through the fields of an atom's body in the order in which they stand in the file. An atom states its fields once, in a
// function Fields that names each of them to a visitor; one kind of visitor reads them, one adds up their size, one writes them
// and one shows them.
//
// What is only there if bytes remain is remembered as state of the atom: reading decides it, the other kinds follow it.
class CFieldVisitor
{
public:
    virtual ~CFieldVisitor() = default;

    // An unsigned big-endian number of 1 to 8 bytes.
    virtual void Number(const char* name, int32_t width, uint64_t& value) = 0;
    // Reserved bytes, which must be 0.
    virtual void Zero(int32_t count) = 0;
    // A fixed count of bytes as they stand.
    virtual void Bytes(const char* name, int64_t count, CAtomBytes& bytes) = 0;
    // All that remains, as it stands.
    virtual void Rest(const char* name, CAtomBytes& bytes) = 0;
    // All that remains, which stays in the file.
    virtual void Range(const char* name, CAtomBytes& bytes, CRangeEnd end) = 0;
    // Bytes up to a NUL, which is one of them, or to the end.
    virtual void Text(const char* name, CAtomBytes& bytes) = 0;
    // As many rows as count says.
    virtual void Table(const char* name, uint32_t count, CAtomTable& table) = 0;
    // The children, as many as fit, or as required if that is not 0.
    virtual void Children(CContainerAtom& atom, uint32_t required = 0) = 0;

    // How many whole rows a table has that fills all that remains; as many as it has, if they are not being read.
    virtual uint32_t CountRows(const CAtomTable& table) const = 0;

    // Whether the fields behind a condition are there: when that many bytes remain, if they are being read.
    virtual bool If(bool& isThere, int64_t bytes) = 0;
    // The same for one more entry of a list of varying entries: when its end is not reached and that many bytes remain.
    virtual bool HasEntry(bool isInList, int64_t bytes) = 0;

    // A number in a field of its own type, or narrower.
    template <class Integer>
    void Field(const char* name, Integer& value, int32_t width = static_cast<int32_t>(sizeof(Integer)))
    {
        uint64_t number = static_cast<std::make_unsigned_t<Integer>>(value);
        Number(name, width, number);
        value = static_cast<Integer>(number);
    }

    // A list of entries whose fields a function names. While it is read it ends after count entries, or before one that has not
    // as many bytes as an entry needs at least.
    template <class Entry, class Function>
    void Entries(std::vector<Entry>& entries, uint64_t count, int64_t minimumBytes, Function fields)
    {
        for (size_t index = 0; index < count && HasEntry(index < entries.size(), minimumBytes); ++index)
        {
            if (index == entries.size())
                entries.emplace_back();
            fields(entries[index]);
        }
    }
};
