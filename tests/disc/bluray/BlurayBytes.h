#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Builds the files of a Blu-ray disc byte by byte, after the layout of the format and with no code of ours.
namespace BlurayBytes
{
// A big-endian number.
inline std::string Number(uint64_t value, int size)
{
    std::string bytes;
    while (size-- > 0)
        bytes.push_back(static_cast<char>(value >> (8 * size)));
    return bytes;
}

inline std::string Zeros(size_t count)
{
    return std::string(count, '\0');
}

// A length of that many bytes in front of what it counts.
inline std::string Sized(const std::string& bytes, int size = 1)
{
    return Number(bytes.size(), size) + bytes;
}

// What a disc says of a stream: the attributes follow the coding type.
struct Stream
{
    uint16_t PID;
    uint8_t Coding;
    std::string Attributes;
};

// 1080p of 24000/1001 and 16:9.
inline Stream Video(uint16_t pid = 0x1011, uint8_t coding = 0x1b)
{
    return {pid, coding, "\x61\x30"};
}

// 5.1 with 48 kHz.
inline Stream Audio(uint16_t pid, const std::string& language, uint8_t coding = 0x81)
{
    return {pid, coding, "\x61" + language};
}

inline Stream Graphics(uint16_t pid, const std::string& language)
{
    return {pid, 0x90, language};
}

// A .clpi file.
inline std::string Clip(const std::vector<Stream>& streams, const std::string& type = "HDMV0200")
{
    std::string entries;
    for (const Stream& stream : streams)
        entries += Number(stream.PID, 2) + Sized(Number(stream.Coding, 1) + stream.Attributes);
    return type + Zeros(4) + Number(16, 4) + Sized(Zeros(8) + Number(streams.size(), 1) + Zeros(1) + entries, 4);
}

struct Angle
{
    std::string Name;
    std::string Tag = "M2TS";
};

// A play item; times are in ticks of 45 kHz.
struct Item
{
    std::string Name;
    uint32_t In = 0;
    uint32_t Out = 0;
    std::vector<Stream> Video = {BlurayBytes::Video()};
    std::vector<Stream> Audio = {};
    std::vector<Stream> Graphics = {};
    std::vector<Angle> Angles = {};
    std::string Tag = "M2TS";
    int AngleCount = -1;  // when it is not that of the list
};

inline std::string Entry(const Stream& stream)
{
    return Sized("\x01" + Number(stream.PID, 2) + Zeros(5)) + Sized(Number(stream.Coding, 1) + stream.Attributes);
}

inline std::string ItemBytes(const Item& item)
{
    const bool isMultiAngle = !item.Angles.empty() || item.AngleCount >= 0;
    std::string bytes = item.Name + item.Tag + Zeros(1) + (isMultiAngle ? "\x10" : Zeros(1)) + Zeros(1) + Number(item.In, 4) +
                        Number(item.Out, 4) + Zeros(12);
    if (isMultiAngle)
    {
        bytes += Number(item.AngleCount >= 0 ? static_cast<size_t>(item.AngleCount) : item.Angles.size() + 1, 1) + Zeros(1);
        for (const Angle& angle : item.Angles)
            bytes += angle.Name + angle.Tag + Zeros(1);
    }
    bytes += Zeros(4) + Number(item.Video.size(), 1) + Number(item.Audio.size(), 1) + Number(item.Graphics.size(), 1) + Zeros(9);
    for (const auto* const streams : {&item.Video, &item.Audio, &item.Graphics})
        for (const Stream& stream : *streams)
            bytes += Entry(stream);
    return Sized(bytes, 2);
}

struct Mark
{
    uint16_t Item;
    uint32_t Time;
    uint8_t Type = 1;
};

// An .mpls file.
inline std::string Playlist(const std::vector<Item>& items, const std::vector<Mark>& marks = {},
                            const std::string& type = "MPLS0200")
{
    std::string list = Zeros(2) + Number(items.size(), 2) + Zeros(2);
    for (const Item& item : items)
        list += ItemBytes(item);
    std::string markList = Number(marks.size(), 2);
    for (const Mark& mark : marks)
        markList += Zeros(1) + Number(mark.Type, 1) + Number(mark.Item, 2) + Number(mark.Time, 4) + Zeros(6);
    return type + Number(16, 4) + Number(20 + list.size(), 4) + Sized(list, 4) + Sized(markList, 4);
}
}
