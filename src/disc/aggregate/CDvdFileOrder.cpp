#include "disc/aggregate/CDvdFileOrder.h"

#include "core/containers/ZVStringArray.h"
#include "core/containers/ZVStringMap.h"
#include "system/filename/ZVFilename.h"

#include <vector>

namespace
{
constexpr const wchar_t* ManagerFiles[] = {L"VIDEO_TS.IFO", L"VIDEO_TS.VOB", L"VIDEO_TS.BUP"};

// The paths that are left, by their bare names in any case.
class Files
{
public:
    explicit Files(const ZVStringArray& files) : m_files(files), m_isTaken(static_cast<size_t>(files.GetCount()))
    {
        for (int32_t index = 0; index < files.GetCount(); ++index)
        {
            const ZVString name = ZVFilename::FromPath(files[index]).GetNameAndExtension();
            if (!m_indexes.Contains(name))
                m_indexes.SetAt(name, index);
        }
    }

    // Moves a file to the end of the list. False when there is no such file.
    bool Move(const ZVString& name, ZVStringArray& out)
    {
        const int32_t* const index = m_indexes.FindValue(name);
        if (index == nullptr)
            return false;
        m_isTaken[static_cast<size_t>(*index)] = true;
        out.Add(m_files[*index]);
        return true;
    }

    void MoveRest(ZVStringArray& out) const
    {
        for (int32_t index = 0; index < m_files.GetCount(); ++index)
            if (!m_isTaken[static_cast<size_t>(index)])
                out.Add(m_files[index]);
    }

private:
    const ZVStringArray& m_files;
    std::vector<bool> m_isTaken;
    ZVStringMap<ZVString, false, int32_t> m_indexes;
};

// Moves the files of a title set. False when there is none of that number.
bool MoveTitleSet(Files& files, int32_t number, ZVStringArray& out)
{
    const ZVString stem = ZVFormat(L"VTS_%02d", number);
    if (!files.Move(stem + L"_0.IFO", out))
        return false;
    int32_t part = 0;
    while (files.Move(ZVFormat(L"%s_%d.VOB", stem, part), out))
        ++part;
    files.Move(stem + L"_0.BUP", out);
    return true;
}
}

void CDvdFileOrder::Append(const ZVStringArray& files, ZVStringArray& out)
{
    Files left(files);
    for (const wchar_t* const name : ManagerFiles)
        left.Move(name, out);
    int32_t number = 1;
    while (MoveTitleSet(left, number, out))
        ++number;
    left.MoveRest(out);
}
