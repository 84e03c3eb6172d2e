#include "platform/linux/language_model/model_list.h"

#include <gmock/gmock.h>

namespace corvandi {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;

const QString any;
const QString small = QStringLiteral("small:1b");
const QString large = QStringLiteral("large:latest");
const QString search = QStringLiteral("text-Embedding-small");

TEST(ModelListTest, NamesAreReadInTheirOrder)
{
    EXPECT_THAT(readModelList(R"({"object":"list","data":[{"id":"b","object":"model"},{"id":"a"}]})"),
                Optional(ElementsAre(QStringLiteral("b"), QStringLiteral("a"))));
}

TEST(ModelListTest, AnEmptyListIsOne)
{
    EXPECT_THAT(readModelList(R"({"data":[]})"), Optional(IsEmpty()));
}

TEST(ModelListTest, OtherDocumentsAreNone)
{
    for (const char* json :
         {"", "[]", "{}", "<html>", R"({"data":null})", R"({"data":{}})", R"({"data":[{"name":"a"}]})",
          R"({"data":["a"]})", "{\"data\":[{\"id\":\"\xFF\"}]}"})
        EXPECT_EQ(readModelList(json), std::nullopt) << json;
}

TEST(ModelListTest, WithoutAWishTheFirstOneIsTaken)
{
    EXPECT_EQ(chooseModel({small, large}, any), small);
}

TEST(ModelListTest, ModelsForSearchDoNotRewrite)
{
    EXPECT_EQ(chooseModel({search, QStringLiteral("bge-reranker"), large}, any), large);
    EXPECT_EQ(chooseModel({search}, any), std::nullopt);
}

TEST(ModelListTest, ANamedModelIsTakenWhateverItIsFor)
{
    EXPECT_EQ(chooseModel({small, search}, search), search);
}

TEST(ModelListTest, TheLatestOfANameNeedNotBeSpelledOut)
{
    EXPECT_EQ(chooseModel({small, large}, QStringLiteral("large")), large);
    EXPECT_EQ(chooseModel({small, large}, QStringLiteral("small")), std::nullopt);
}

TEST(ModelListTest, ANamedModelThatIsMissingIsNotReplaced)
{
    EXPECT_EQ(chooseModel({small, large}, QStringLiteral("other")), std::nullopt);
}

} // namespace
} // namespace corvandi
