#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>

// A table of inputs, which also name the rows, with what a function must return for each.
template <class Input, class Expected, class Function>
void ExpectRows(std::initializer_list<std::pair<Input, Expected>> rows, Function function)
{
    for (const auto& [input, expected] : rows)
        EXPECT_EQ(function(input), expected) << "of " << testing::PrintToString(input);
}
