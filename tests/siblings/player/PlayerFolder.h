#pragma once

#include "process/WorkFolder.h"
#include "siblings/player/CVideoPlayer.h"
#include "siblings/player/PlayerOutput.h"
#include "video/codec/CZVAVLibraries.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

// A folder in which ffmpeg makes films, which the player opens.
class PlayerFolder : public testing::Test
{
protected:
    using Frame = PlayerOutput::Frame;

    void SetUp() override
    {
        if (!CZVAVLibraries().Loaded || system("ffmpeg -version >/dev/null 2>&1") != 0)
            GTEST_SKIP() << "ffmpeg or the codec component is not there";
    }

    // Runs ffmpeg with arguments; the last is the film.
    static void Make(const std::string& arguments)
    {
        const std::string command = "ffmpeg -nostdin -v error -y " + arguments + " >program.log 2>&1";
        EXPECT_EQ(system(command.c_str()), 0) << arguments << "\n" << WorkFolder::Read("program.log");
    }

    static bool Open(CVideoPlayer& player, const std::string& film)
    {
        return player.Open(ZVString::FromUTF8(film.c_str()), -10000);
    }

    // The frames from a time on, at most as many as that.
    static std::vector<Frame> GetFrames(CVideoPlayer& player, int64_t milliseconds, size_t count = 1)
    {
        PlayerOutput output(count);
        player.SetVideoOutput(&output);
        player.Seek(milliseconds);
        EXPECT_TRUE(player.Play(0));
        EXPECT_TRUE(output.Wait());
        player.Stop();
        player.SetVideoOutput(nullptr);
        return output.Frames;
    }

    // The frame on screen at a time; one without a size if there is none.
    static Frame GetFrame(const std::string& film, int64_t milliseconds)
    {
        CVideoPlayer player;
        EXPECT_TRUE(Open(player, film)) << film;
        const std::vector<Frame> frames = GetFrames(player, milliseconds);
        return frames.empty() ? Frame() : frames[0];
    }

    const WorkFolder m_folder;
};
