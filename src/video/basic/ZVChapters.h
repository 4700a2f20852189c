#pragma once

class IZVVideoPlayer;
class ZVPropertyMap;

// The chapters of an open film as properties: their count, their names and their starts in milliseconds, both lists parted by "|". A
// "|" in a name stays as it is. A film without chapters has none of the three.
void WriteChapters(IZVVideoPlayer& player, ZVPropertyMap& properties);
