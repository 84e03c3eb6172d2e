#include "core/hotkey/key_names.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <string>

namespace corvandi {
namespace {

/// Typed from a keyboard's picture, row by row, to be compared with the table in the order of the codes.
const std::map<int64_t, std::string> expectedNames{
    {18, "1"}, {19, "2"},     {20, "3"},      {21, "4"},   {23, "5"},      {22, "6"},   {26, "7"},
    {28, "8"}, {25, "9"},     {29, "0"},      {12, "Q"},   {13, "W"},      {14, "E"},   {15, "R"},
    {17, "T"}, {16, "Y"},     {32, "U"},      {34, "I"},   {31, "O"},      {35, "P"},   {0, "A"},
    {1, "S"},  {2, "D"},      {3, "F"},       {5, "G"},    {4, "H"},       {38, "J"},   {40, "K"},
    {37, "L"}, {6, "Z"},      {7, "X"},       {8, "C"},    {9, "V"},       {11, "B"},   {45, "N"},
    {46, "M"}, {49, "Space"}, {36, "Return"}, {48, "Tab"}, {51, "Delete"}, {53, "Esc"},
};

TEST(KeyCodes, AllLettersAllDigitsAndFiveOtherKeysHaveNames)
{
    EXPECT_EQ(expectedNames.size(), 26u + 10u + 5u);
    for (const auto& [code, name] : expectedNames)
        EXPECT_EQ(KeyCodes::name(code).toStdString(), name) << code;
}

TEST(KeyCodes, EveryOtherKeyIsCalledByItsNumber)
{
    for (int64_t code = -3; code < 300; ++code) {
        if (!expectedNames.contains(code)) {
            EXPECT_EQ(KeyCodes::name(code).toStdString(), "Key " + std::to_string(code));
        }
    }
}

TEST(KeyCodes, NumbersThatNoKeyHasAreNamedAllTheSame)
{
    for (const int64_t code : {int64_t{-1}, int64_t{65535}, int64_t{65536}, int64_t{1} << 32,
                               std::numeric_limits<int64_t>::min(), std::numeric_limits<int64_t>::max()})
        EXPECT_EQ(KeyCodes::name(code).toStdString(), "Key " + std::to_string(code));
}

} // namespace
} // namespace corvandi
