// That an operation says its name before anything else.

#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <testing/LogCapture.h>

using TracedCalls = std::vector<std::pair<const char*, std::function<void()>>>;

// Makes each call and looks for "<className>::<operation>()" as the first line that it logs.
inline void expectTraces(const std::string& className, const TracedCalls& calls)
{
    for (const auto& [operation, call] : calls) {
        const LogCapture log;
        call();
        const auto lines = log.lines();
        ASSERT_FALSE(lines.empty()) << operation;
        EXPECT_EQ(lines[0].text, className + "::" + operation + "()");
        EXPECT_EQ(lines[0].level, 5) << operation;
        EXPECT_EQ(lines[0].component, "PhonebookPhonelet") << operation;
        EXPECT_EQ(lines[0].file, "./src/" + className) << operation;
    }
}
