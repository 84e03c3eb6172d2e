#pragma once

#include "conformance/conformance.h"
#include "ports/user_defaults.h"

#include <limits>

namespace corvandi::testing {

/// A user, whose preferences are empty at first.
class UserDefaultsDriver {
public:
    virtual ~UserDefaultsDriver() = default;

    /// The preferences of the running program.
    [[nodiscard]] virtual UserDefaults& defaults() = 0;
    /// Ends the program and starts it anew.
    virtual void restart() = 0;
};

class UserDefaultsSuite : public ConformanceTest<UserDefaultsDriver> {
protected:
    [[nodiscard]] UserDefaults& defaults() { return driver.defaults(); }

    const QString key = QStringLiteral("key");
};

TEST_P(UserDefaultsSuite, AnAbsentKeyIsZeroFalseAndNoText)
{
    EXPECT_EQ(defaults().integer(key), 0);
    EXPECT_FALSE(defaults().boolean(key));
    EXPECT_EQ(defaults().string(key), std::nullopt);
}

TEST_P(UserDefaultsSuite, RegisteredDefaultsAnswerForAbsentKeys)
{
    defaults().registerDefaults({{QStringLiteral("number"), int64_t{49}},
                                 {QStringLiteral("flag"), true},
                                 {QStringLiteral("text"), QStringLiteral("type")}});
    EXPECT_EQ(defaults().integer(QStringLiteral("number")), 49);
    EXPECT_TRUE(defaults().boolean(QStringLiteral("flag")));
    EXPECT_EQ(defaults().string(QStringLiteral("text")), QStringLiteral("type"));
    EXPECT_EQ(defaults().string(key), std::nullopt);
}

TEST_P(UserDefaultsSuite, ALaterRegistrationReplacesAndAdds)
{
    defaults().registerDefaults({{key, int64_t{1}}, {QStringLiteral("other"), int64_t{5}}});
    defaults().registerDefaults({{key, int64_t{2}}});
    EXPECT_EQ(defaults().integer(key), 2);
    EXPECT_EQ(defaults().integer(QStringLiteral("other")), 5);
}

TEST_P(UserDefaultsSuite, WhatWasSetHidesTheRegisteredDefault)
{
    defaults().set(key, int64_t{11});
    defaults().registerDefaults({{key, int64_t{49}}});
    EXPECT_EQ(defaults().integer(key), 11);
    defaults().set(key, false);
    defaults().registerDefaults({{key, true}});
    EXPECT_FALSE(defaults().boolean(key));
}

TEST_P(UserDefaultsSuite, NumbersComeBackOverTheirWholeRange)
{
    for (const int64_t number : {int64_t{0}, int64_t{-7}, int64_t{65535}, std::numeric_limits<int64_t>::max(),
                                 std::numeric_limits<int64_t>::min()}) {
        defaults().set(key, number);
        EXPECT_EQ(defaults().integer(key), number);
    }
}

TEST_P(UserDefaultsSuite, TextThatIsNoNumberIsZero)
{
    for (const char* text : {"", "space", "12abc", "1.5", "0x31", "true", "99999999999999999999"}) {
        defaults().set(key, QString::fromLatin1(text));
        EXPECT_EQ(defaults().integer(key), 0) << text;
    }
    defaults().set(key, QStringLiteral("-12"));
    EXPECT_EQ(defaults().integer(key), -12);
}

TEST_P(UserDefaultsSuite, ATruthValueIsNoNumber)
{
    defaults().set(key, true);
    EXPECT_EQ(defaults().integer(key), 0);
}

TEST_P(UserDefaultsSuite, SomeWordsAndNumbersAreTrueAllElseIsFalse)
{
    for (const char* text : {"true", "True", "TRUE", "yes", "YES", "on", "1", "2", "-1"}) {
        defaults().set(key, QString::fromLatin1(text));
        EXPECT_TRUE(defaults().boolean(key)) << text;
    }
    for (const char* text : {"", "false", "no", "off", "0", "maybe", "truely", "y", "1x"}) {
        defaults().set(key, QString::fromLatin1(text));
        EXPECT_FALSE(defaults().boolean(key)) << text;
    }
    defaults().set(key, int64_t{3});
    EXPECT_TRUE(defaults().boolean(key));
    defaults().set(key, int64_t{0});
    EXPECT_FALSE(defaults().boolean(key));
}

TEST_P(UserDefaultsSuite, OtherTypesAreReadAsTheirText)
{
    defaults().set(key, int64_t{49});
    EXPECT_EQ(defaults().string(key), QStringLiteral("49"));
    defaults().set(key, true);
    EXPECT_EQ(defaults().string(key), QStringLiteral("true"));
    defaults().set(key, false);
    EXPECT_EQ(defaults().string(key), QStringLiteral("false"));
}

TEST_P(UserDefaultsSuite, AnEmptyTextIsATextNotAnAbsentOne)
{
    defaults().registerDefaults({{key, QStringLiteral("type")}});
    defaults().set(key, QString());
    EXPECT_EQ(defaults().string(key), QString());
}

TEST_P(UserDefaultsSuite, WhatWasSetIsStillThereWhenTheProgramStartsAnew)
{
    defaults().set(key, int64_t{36});
    defaults().set(QStringLiteral("flag"), true);
    defaults().set(QStringLiteral("text"), QStringLiteral("Größe; = \"1, 2\""));
    driver.restart();
    EXPECT_EQ(defaults().integer(key), 36);
    EXPECT_TRUE(defaults().boolean(QStringLiteral("flag")));
    EXPECT_EQ(defaults().string(QStringLiteral("text")), QStringLiteral("Größe; = \"1, 2\""));
}

TEST_P(UserDefaultsSuite, ARegisteredDefaultIsNotStored)
{
    defaults().registerDefaults({{key, int64_t{49}}});
    driver.restart();
    EXPECT_EQ(defaults().string(key), std::nullopt);
}

} // namespace corvandi::testing
