#include "siblings/player/CDelivery.h"

#include "siblings/player/PlayerOutput.h"

#include <cstdlib>
#include <deque>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <latch>

namespace
{
using testing::ElementsAre;
using Outcome = IFrameSource::Outcome;

constexpr uint8_t Pixels[64] = {};

// Gives what it was told to, and then frames without an end. It can be stuck like a decoder.
class Source final : public IFrameSource
{
public:
    struct Step
    {
        Outcome Result = Outcome::Frame;
        int32_t Width = 2;
    };

    explicit Source(std::deque<Step> steps = {}) : m_steps(std::move(steps)) {}

    Outcome Next(ZVVideoFrame& frame) override
    {
        BeforeNext();
        Step step;
        if (!m_steps.empty())
        {
            step = m_steps.front();
            m_steps.pop_front();
        }
        frame = {0, step.Width, 1, Pixels, step.Width * 4};
        return m_isCancelled ? Outcome::End : step.Result;
    }

    std::function<void()> BeforeNext = [] {};

private:
    std::deque<Step> m_steps;
};

TEST(CDelivery, TellsHowItGoesOn)
{
    struct Case
    {
        std::deque<Source::Step> Steps;
        std::vector<std::string> Calls;
    };
    const Case cases[] = {
        {{{Outcome::End}},                                                                {"play", "end"}         },
        {{{Outcome::Failure}},                                                            {"play", "error", "end"}},
        {{{Outcome::Frame, 2}, {Outcome::Frame, 2}, {Outcome::Frame, 3}, {Outcome::End}},
         {"play", "place", "format", "frame", "frame", "format", "frame", "end"}                                  },
    };
    for (const Case& test : cases)
    {
        PlayerOutput output(9);
        CDelivery delivery;
        ASSERT_TRUE(delivery.Start(std::make_unique<Source>(test.Steps), output));
        ASSERT_TRUE(output.Wait());
        EXPECT_NE(delivery.TakeBack(), nullptr);
        std::vector<std::string> expected = test.Calls;
        expected.emplace_back("stop");
        EXPECT_EQ(output.Calls, expected);
    }
}

TEST(CDelivery, StopsAfterTheCallThatGoesOn)
{
    std::latch isInCall(1);
    std::atomic<bool> isCallOver = false;
    PlayerOutput output(9);
    output.DuringFrame = [&]
    {
        isInCall.count_down();
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        isCallOver = true;
    };
    CDelivery delivery;
    ASSERT_TRUE(delivery.Start(std::make_unique<Source>(), output));
    isInCall.wait();
    delivery.Stop();
    EXPECT_TRUE(isCallOver);
    const size_t calls = output.Calls.size();
    EXPECT_EQ(output.Calls.back(), "stop");
    EXPECT_NE(delivery.TakeBack(), nullptr);
    EXPECT_EQ(output.Calls.size(), calls);
}

// The decoder comes back late here, so that nothing is left running when the test ends.
TEST(CDelivery, LeavesAStuckThreadWithItsSource)
{
    static std::latch s_release(1);
    static std::latch s_isStuck(1);
    static std::latch s_isGone(1);
    struct Ender
    {
        ~Ender() { s_isGone.count_down(); }
    };
    auto source = std::make_unique<Source>();
    source->BeforeNext = [ender = std::make_shared<Ender>()]
    {
        s_isStuck.count_down();
        s_release.wait();
    };
    PlayerOutput output(9);
    CDelivery delivery(20);
    ASSERT_TRUE(delivery.Start(std::move(source), output));
    s_isStuck.wait();
    delivery.Stop();
    EXPECT_EQ(delivery.TakeBack(), nullptr);
    s_release.count_down();
    s_isGone.wait();
    EXPECT_THAT(output.Calls, ElementsAre("play", "stop"));
}

TEST(CDeliveryDeathTest, TheProcessEndsWithoutAStuckThread)
{
    const auto endWhileStuck = []
    {
        std::atexit([] { std::_Exit(1); });
        PlayerOutput output;
        auto source = std::make_unique<Source>();
        std::latch isStuck(1);
        source->BeforeNext = [&isStuck]
        {
            isStuck.count_down();
            std::this_thread::sleep_for(std::chrono::hours(1));
        };
        {
            CDelivery delivery(20);
            delivery.Start(std::move(source), output);
            isStuck.wait();
        }
        std::exit(7);
    };
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(endWhileStuck(), testing::ExitedWithCode(7), "");
}
}
