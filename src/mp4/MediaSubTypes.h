#pragma once

class ZVPropertyMap;

// Sets "Media Sub Type", the word for what a file's tags "stik" and "Podcast" say it is, if they say something that is known.
void SetMediaSubType(ZVPropertyMap& map);
