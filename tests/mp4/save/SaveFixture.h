#pragma once

#include "mp4/AtomBytes.h"
#include "mp4/CMp4File.h"
#include "system/file/FileFixture.h"

// A number in the bytes of a file.
inline uint64_t NumberAt(const AtomBytes::Bytes& bytes, size_t position, int width)
{
    uint64_t number = 0;
    for (int index = 0; index < width; ++index)
        number = number << 8 | static_cast<uint8_t>(bytes[position++]);
    return number;
}

// Tests that save films in a folder of their own, which is the home folder too.
class SaveFixture : public FileFixture
{
protected:
    using Bytes = AtomBytes::Bytes;

    SaveFixture() { setenv("HOME", m_folder.c_str(), 1); }

    static constexpr char TemporaryFolder[] = ".zivora/Generic/Temp";

    bool Open(CMp4File& film, const std::string& name) const
    {
        try
        {
            return film.Open(NameAt(name)) && film.ReadAtoms() && film.Verify();
        }
        catch (Exception* exception)
        {
            delete exception;
            return false;
        }
    }

    // Adds a free atom to the movie, with a body of that many bytes.
    static void Grow(const CMp4File& film, size_t count)
    {
        AtomBytes::Tree added(AtomBytes::Atom("free", Bytes(count, 'f')));
        for (CAtom* const root : film.GetRootAtoms())
            if (root->GetType() == FourCC("moov"))
                static_cast<CContainerAtom*>(root)->AddChild(std::move(added.Roots.front()));
    }
};
