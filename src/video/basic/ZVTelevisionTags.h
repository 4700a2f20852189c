#pragma once

class ZVTagMapper;

// The tags that Windows writes into its recordings of television.
namespace ZVTelevisionTags
{
// Whether files of an extension are such recordings. It counts as it stands: in upper case it is that of an ordinary file.
bool AreIn(const wchar_t* extension);
// Takes the tags over: who plays, what is shown, when it was sent and by whom. Comes after all other tags, some of which it moves.
void Map(const ZVTagMapper& mapper);
}
