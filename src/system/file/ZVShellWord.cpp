#include "system/file/ZVShellWord.h"

#include "system/filename/ZVFilename.h"
#include "system/filename/ZVNativePath.h"

ZVString ZVShellWord(const ZVString& path)
{
    ZVString text = path;
    ZVFilename::MakeFileSystemPath(text);
    if (text.StartsWith(L'-'))
        text.Prepend(L"./");

    ZVString word;
    int32_t runStart = 0;
    for (int32_t position = 0; position < text.GetLength(); ++position)
    {
        const unsigned char byte = ZVNativePath::GetCarriedByte(text[position]);
        if (byte == 0)
            continue;
        word.Append(text.Mid(runStart, position - runStart).QuoteForShell());
        word.AppendFormat(L"\"$(printf '\\%s')\"", ZVString::FromInt(byte, 3, 8));
        runStart = position + 1;
    }
    word.Append(text.Mid(runStart).QuoteForShell());
    return word;
}
