// Films of another program, whose frames are compared by that program before and after they were saved.

#include "SaveFixture.h"
#include "mp4/heif/ILocAtom.h"
#include "mp4/save/ForEachAtom.h"

#include <functional>

namespace
{
using namespace AtomBytes;

// What becomes of an atom that is no container.
using Change = std::function<Bytes(const Bytes& type, const Bytes& body)>;

Bytes ChangeAtoms(const Bytes& atoms, const Change& change)
{
    const std::set<Bytes> containers = {"moov", "trak", "mdia", "minf", "stbl"};
    Bytes changed;
    for (size_t position = 0, size = 0; position < atoms.size(); position += size)
    {
        size = NumberAt(atoms, position, 4);
        const Bytes type = atoms.substr(position + 4, 4);
        const Bytes body = atoms.substr(position + 8, size - 8);
        changed += containers.contains(type) ? Atom(type, ChangeAtoms(body, change)) : change(type, body);
    }
    return changed;
}

// The offsets of a stco, in a table whose offsets have another width or other values.
Bytes ChangeOffsets(const Bytes& body, int width, const std::function<uint64_t(uint64_t)>& change)
{
    Bytes changed = body.substr(0, 8);
    for (size_t entry = 8; entry < body.size(); entry += 4)
        changed += Number(change(NumberAt(body, entry, 4)), width);
    return changed;
}

Bytes ToLongOffsets(const Bytes& film, uint64_t shift)
{
    const auto change = [shift](const Bytes& type, const Bytes& body)
    { return type == "stco" ? Atom("co64", ChangeOffsets(body, 8, [&](uint64_t at) { return at + shift; })) : Atom(type, body); };
    return ChangeAtoms(film, change);
}

// Of a film whose movie stands in front, so that the longer tables move the media.
Bytes MakeLongOffsets(const Bytes& film)
{
    return ToLongOffsets(film, ToLongOffsets(film, 0).size() - film.size());
}

// The mdat becomes two, with a free atom in between, at the chunk in the middle of the first track.
Bytes SplitMedia(const Bytes& film)
{
    const size_t table = film.find("stco") + 8;
    const uint64_t place = NumberAt(film, table + 4 + 4 * (NumberAt(film, table, 4) / 2), 4);
    const uint64_t start = film.find("mdat") + 4;
    const Bytes between = Atom("free", "between");
    const auto change = [&](const Bytes& type, const Bytes& body)
    {
        if (type == "mdat")
            return Atom("mdat", body.substr(0, place - start)) + between + Atom("mdat", body.substr(place - start));
        const auto move = [&](uint64_t offset) { return offset < place ? offset : offset + between.size() + 8; };
        return Atom(type, type == "stco" ? ChangeOffsets(body, 4, move) : body);
    };
    return ChangeAtoms(film, change);
}

struct FilmRow
{
    const char* Name;
    const char* Options;
    const char* File;
    Bytes (*Rebuild)(const Bytes& film);
    std::vector<Bytes> Roots;
};

class SavedFilmsTest : public SaveFixture, public testing::WithParamInterface<FilmRow>
{
protected:
    bool Run(const std::string& arguments) const
    {
        return system(("cd " + m_folder + " && ffmpeg -v error -y " + arguments + " </dev/null >log 2>&1").c_str()) == 0;
    }

    Bytes GetFrames(const std::string& name) const
    {
        EXPECT_TRUE(Run("-i " + name + " -map 0 -f framemd5 frames")) << GetAt("log");
        return GetAt("frames");
    }

    // The bytes of all items of a file.
    static std::vector<Bytes> GetItems(const Bytes& file)
    {
        std::vector<Bytes> items;
        Tree tree(file);
        ZVOwnedPtrArray<CAtom> roots;
        for (auto& root : tree.Roots)
            roots.Add(root.release());
        for (const ILocAtom* const places : FindAtoms<ILocAtom>(roots))
            for (const ILocEntry& entry : places->GetEntries())
                for (const ILocExtent& extent : entry.Extents)
                    items.push_back(file.substr(entry.BaseOffset + extent.Offset, extent.Length));
        return items;
    }

    static std::vector<Bytes> GetRoots(const Bytes& file)
    {
        std::vector<Bytes> roots;
        for (size_t position = 0; position < file.size(); position += NumberAt(file, position, 4))
            roots.push_back(file.substr(position + 4, 4));
        return roots;
    }
};

TEST_P(SavedFilmsTest, KeepAllFrames)
{
    const FilmRow& row = GetParam();
    const std::string name = row.File;
    if (!Run("-f lavfi -i testsrc2=s=64x48:d=3:r=10 -f lavfi -i sine=d=3 " + std::string(row.Options) + " " + name))
        GTEST_SKIP() << "ffmpeg cannot make such a film here: " << GetAt("log");
    if (row.Rebuild != nullptr)
        Put(name, row.Rebuild(GetAt(name)));
    const Bytes before = GetAt(name);
    ASSERT_EQ(GetRoots(before), row.Roots);
    const Bytes frames = GetFrames(name);
    ASSERT_GT(std::ranges::count(frames, '\n'), 20);
    CMp4File film;
    ASSERT_TRUE(Open(film, name));
    Grow(film, 1000);
    EXPECT_TRUE(film.Save());
    EXPECT_EQ(film.GetLastError(), L"");
    EXPECT_EQ(GetFrames(name), frames);
    EXPECT_EQ(GetItems(GetAt(name)), GetItems(before));
    EXPECT_EQ(GetAt(name).size(), before.size() + 1008);
}

constexpr char MovieLast[] = "-c:v mpeg4 -c:a aac -map 0 -map 1";
constexpr char MovieFirst[] = "-c:v mpeg4 -c:a aac -map 0 -map 1 -movflags faststart";
constexpr char Pictures[] = "-map 0 -c:v libaom-av1 -cpu-used 8 -threads 1 -g 5 -r 10";

const FilmRow Films[] = {
    {"MovieLast",   MovieLast,  "film.mp4",  nullptr,         {"ftyp", "free", "mdat", "moov"}                },
    {"MovieFirst",  MovieFirst, "film.mp4",  nullptr,         {"ftyp", "moov", "free", "mdat"}                },
    {"SeveralMdat", MovieFirst, "film.mp4",  SplitMedia,      {"ftyp", "moov", "free", "mdat", "free", "mdat"}},
    {"LongOffsets", MovieFirst, "film.mp4",  MakeLongOffsets, {"ftyp", "moov", "free", "mdat"}                },
    {"QuickTime",   MovieFirst, "film.mov",  nullptr,         {"ftyp", "moov", "wide", "mdat"}                },
    {"Pictures",    Pictures,   "film.avif", nullptr,         {"ftyp", "meta", "moov", "mdat"}                },
};

INSTANTIATE_TEST_SUITE_P(Films, SavedFilmsTest, testing::ValuesIn(Films), [](const auto& row) { return row.param.Name; });
}
