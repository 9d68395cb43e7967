#include "cli/Operands.h"
#include "cli/OutputPattern.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

TEST(Operands, TimesInEverySpelling) {
    constexpr double kNone = -1.0;
    const std::pair<const char*, double> cases[] = {
        {"90", 90},         {"12.5", 12.5},     {"9.0e1", 90},       {".5", 0.5},
        {"1:30.25", 90.25}, {"0:01:30", 90},    {"100:00", 6000},    {"1h2m3.5s", 3723.5},
        {"90m", 5400},      {"1.5h", 5400},     {"2h3s", 7203},      {"0s", 0},
        {"end", 100},       {"end-30", 70},     {"end-1:00", 40},    {"end-1m30s", 10},
        {"end-101", 0},     {"", kNone},        {"-1", kNone},       {"nan", kNone},
        {"inf", kNone},     {"1e999", kNone},   {"1:5", kNone},      {"1:60", kNone},
        {"1::30", kNone},   {"1:60:00", kNone}, {"1:2:3:04", kNone}, {"0x10", kNone},
        {"1.5:00", kNone},  {"5 ", kNone},      {"s", kNone},        {"1m1h", kNone},
        {"1m1m", kNone},    {"1h60m", kNone},   {"1.5h2m", kNone},   {"1h2", kNone},
        {"end30", kNone},   {"end-", kNone},    {"end-end", kNone},  {"end--1", kNone},
    };
    for (const auto& [text, seconds] : cases) {
        const auto time = ParseTime(text);
        EXPECT_EQ(time ? time->In(100) : kNone, seconds) << text;
    }
}

TEST(Operands, LevelsInEverySpelling) {
    EXPECT_EQ(ParseLevelOperand("0.01").share, 0.01F);
    EXPECT_EQ(ParseLevelOperand("1e-99").share, std::numeric_limits<float>::min());
    EXPECT_NEAR(ParseLevelOperand("-46dB").share, 0.005012F, 1e-6);
    EXPECT_NEAR(ParseLevelOperand("+6.5DB").share, 2.113F, 1e-3);
    EXPECT_TRUE(ParseLevelOperand("auto").isAuto);
    for (const char* text : {"", "0", "-0.1", "-46", "dB", "--6dB", "loud", "nan"}) {
        EXPECT_THROW(ParseLevelOperand(text), UsageError) << text;
    }
}

std::string Named(const std::string& pattern, const std::vector<std::string>& titles) {
    try {
        std::string names;
        for (const std::string& name : OutputPattern(pattern).Names(titles)) {
            names += name + ";";
        }
        return names;
    } catch (const UsageError&) {
        return "refused";
    }
}

TEST(OutputPattern, NumbersAndTitles) {
    const std::vector<std::string> none(2);
    const std::string long_ = std::string(254, 'a') + "\xE6\x9B\xB2";
    const std::tuple<std::string, std::vector<std::string>, std::string> cases[] = {
        {"p-%.wav", none, "p-1.wav;p-2.wav;"},
        {"100%-%.wav", none, "100%-1.wav;100%-2.wav;"},
        {"%3.wav", none, "001.wav;002.wav;"},
        {"%03d.wav", none, "001.wav;002.wav;"},
        {"%3d.wav", none, "001.wav;002.wav;"},
        {"%2024.wav", none, "01024.wav;02024.wav;"},
        {"5%discount.wav", none, "51discount.wav;52discount.wav;"},
        {"p.wav", none, "refused"},
        {"{title}.wav", {"a/b\n", "100%"}, "a_b_.wav;100%.wav;"},
        {"% {title}.wav", {"x", ""}, "1 x.wav;2 2.wav;"},
        {"{title}/{title}.wav", {"..", "."}, "__/...wav;_/..wav;"},
        {"{title}.wav", {"x", "x"}, "refused"},
        {"{title}.wav", {"2", ""}, "refused"},
        {"d/{title}.wav", {long_, "y"}, "d/" + std::string(251, 'a') + ".wav;d/y.wav;"},
        {"{title}", {long_, "y"}, std::string(254, 'a') + ";y;"},
    };
    for (const auto& [pattern, titles, names] : cases) {
        EXPECT_EQ(Named(pattern, titles), names);
    }
    EXPECT_EQ(Named("%", std::vector<std::string>(10)), "01;02;03;04;05;06;07;08;09;10;");
}

} // namespace
