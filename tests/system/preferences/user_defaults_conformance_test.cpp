#include "support/fake_user_defaults.h"
#include "support/recording_log.h"
#include "system/preferences/qt_user_defaults.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>

// What every store of preferences must do, run over all of them.

namespace corvandi {
namespace {

class QtStore {
public:
    UserDefaults& defaults() { return defaults_; }

private:
    testing::RecordingLog log_;
    QTemporaryDir folder_;
    QtUserDefaults defaults_{log_, folder_.filePath(QStringLiteral("Corvandi.conf"))};
};

class FakeStore {
public:
    UserDefaults& defaults() { return defaults_; }

private:
    testing::FakeUserDefaults defaults_;
};

template<class Store>
class UserDefaultsConformance : public ::testing::Test {
protected:
    Store store;
    UserDefaults& defaults = store.defaults();
    const QString key = QStringLiteral("key");
};

struct StoreNames {
    template<class Store>
    static std::string GetName(int)
    {
        return std::is_same_v<Store, QtStore> ? "Qt" : "Fake";
    }
};

using Stores = ::testing::Types<QtStore, FakeStore>;
TYPED_TEST_SUITE(UserDefaultsConformance, Stores, StoreNames);

TYPED_TEST(UserDefaultsConformance, AnAbsentKeyIsZeroFalseAndNoText)
{
    EXPECT_EQ(this->defaults.integer(this->key), 0);
    EXPECT_FALSE(this->defaults.boolean(this->key));
    EXPECT_EQ(this->defaults.string(this->key), std::nullopt);
}

TYPED_TEST(UserDefaultsConformance, RegisteredDefaultsAnswerForAbsentKeys)
{
    this->defaults.registerDefaults({{QStringLiteral("number"), int64_t{49}},
                                     {QStringLiteral("flag"), true},
                                     {QStringLiteral("text"), QStringLiteral("type")}});
    EXPECT_EQ(this->defaults.integer(QStringLiteral("number")), 49);
    EXPECT_TRUE(this->defaults.boolean(QStringLiteral("flag")));
    EXPECT_EQ(this->defaults.string(QStringLiteral("text")), QStringLiteral("type"));
    EXPECT_EQ(this->defaults.string(this->key), std::nullopt);
}

TYPED_TEST(UserDefaultsConformance, ALaterRegistrationReplacesAndAdds)
{
    this->defaults.registerDefaults({{this->key, int64_t{1}}, {QStringLiteral("other"), int64_t{5}}});
    this->defaults.registerDefaults({{this->key, int64_t{2}}});
    EXPECT_EQ(this->defaults.integer(this->key), 2);
    EXPECT_EQ(this->defaults.integer(QStringLiteral("other")), 5);
}

TYPED_TEST(UserDefaultsConformance, WhatWasSetHidesTheRegisteredDefault)
{
    this->defaults.set(this->key, int64_t{11});
    this->defaults.registerDefaults({{this->key, int64_t{49}}});
    EXPECT_EQ(this->defaults.integer(this->key), 11);
    this->defaults.set(this->key, false);
    this->defaults.registerDefaults({{this->key, true}});
    EXPECT_FALSE(this->defaults.boolean(this->key));
}

TYPED_TEST(UserDefaultsConformance, NumbersComeBackOverTheirWholeRange)
{
    for (const int64_t number : {int64_t{0}, int64_t{-7}, int64_t{65535}, std::numeric_limits<int64_t>::max(),
                                 std::numeric_limits<int64_t>::min()}) {
        this->defaults.set(this->key, number);
        EXPECT_EQ(this->defaults.integer(this->key), number);
    }
}

TYPED_TEST(UserDefaultsConformance, TextThatIsNoNumberIsZero)
{
    for (const char* text : {"", "space", "12abc", "1.5", "0x31", "true", "99999999999999999999"}) {
        this->defaults.set(this->key, QString::fromLatin1(text));
        EXPECT_EQ(this->defaults.integer(this->key), 0) << text;
    }
    this->defaults.set(this->key, QStringLiteral("-12"));
    EXPECT_EQ(this->defaults.integer(this->key), -12);
}

TYPED_TEST(UserDefaultsConformance, ATruthValueIsNoNumber)
{
    this->defaults.set(this->key, true);
    EXPECT_EQ(this->defaults.integer(this->key), 0);
}

TYPED_TEST(UserDefaultsConformance, SomeWordsAndNumbersAreTrueAllElseIsFalse)
{
    for (const char* text : {"true", "True", "TRUE", "yes", "YES", "on", "1", "2", "-1"}) {
        this->defaults.set(this->key, QString::fromLatin1(text));
        EXPECT_TRUE(this->defaults.boolean(this->key)) << text;
    }
    for (const char* text : {"", "false", "no", "off", "0", "maybe", "truely", "y", "1x"}) {
        this->defaults.set(this->key, QString::fromLatin1(text));
        EXPECT_FALSE(this->defaults.boolean(this->key)) << text;
    }
    this->defaults.set(this->key, int64_t{3});
    EXPECT_TRUE(this->defaults.boolean(this->key));
    this->defaults.set(this->key, int64_t{0});
    EXPECT_FALSE(this->defaults.boolean(this->key));
}

TYPED_TEST(UserDefaultsConformance, OtherTypesAreReadAsTheirText)
{
    this->defaults.set(this->key, int64_t{49});
    EXPECT_EQ(this->defaults.string(this->key), QStringLiteral("49"));
    this->defaults.set(this->key, true);
    EXPECT_EQ(this->defaults.string(this->key), QStringLiteral("true"));
    this->defaults.set(this->key, false);
    EXPECT_EQ(this->defaults.string(this->key), QStringLiteral("false"));
}

TYPED_TEST(UserDefaultsConformance, AnEmptyTextIsATextNotAnAbsentOne)
{
    this->defaults.registerDefaults({{this->key, QStringLiteral("type")}});
    this->defaults.set(this->key, QString());
    EXPECT_EQ(this->defaults.string(this->key), QString());
}

} // namespace
} // namespace corvandi
