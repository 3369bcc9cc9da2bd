#include "devcloud/api/RequestBody.h"

#include "devcloud/api/Messages.h"

#include <gtest/gtest.h>

namespace tavrin::devcloud {
namespace {

Problem problemOf(std::string_view body)
{
    const Outcome outcome = parseBody(body);
    return outcome ? Problem{200, "", {}} : outcome.error();
}

std::string nested(int levels, char open, char close)
{
    std::string body = R"({"a":)";
    body.append(static_cast<std::size_t>(levels - 1), open);
    body.append(static_cast<std::size_t>(levels - 1), close);
    return body + "}";
}

TEST(RequestBodyTest, AnObjectIsRead)
{
    EXPECT_EQ(parseBody(R"( {"a": 1} )").value()["a"], 1);
    EXPECT_TRUE(parseBody("{}").value().empty());
}

TEST(RequestBodyTest, WhatIsNoObjectIsRefusedWithItsReason)
{
    EXPECT_EQ(problemOf("").message, messages::bodyMissing);
    for (const char* body : {"[]", "[{}]", "1", R"("text")", "null", "true"}) {
        EXPECT_EQ(problemOf(body).status, 400) << body;
        EXPECT_EQ(problemOf(body).message, messages::bodyNotObject) << body;
    }
    for (const char* body : {" ", "{", R"({"a"})", "{}{}", R"({"a":1e999})", "text", "{'a':1}",
             "{\"a\":\"\xff\"}", "{\"a\":\"\xc3\"}", "{\"a\":\"\xed\xa0\x80\"}", "\xef\xbb\xbf{",
             R"({"a":"\ud800"})", "{\"a\":\"\n\"}"}) {
        EXPECT_EQ(problemOf(body).status, 400) << body;
        EXPECT_EQ(problemOf(body).message, messages::bodyNotJson) << body;
    }
}

TEST(RequestBodyTest, TooManyBytesAre413)
{
    const std::string filling(maxBodyBytes - 8, 'x');
    EXPECT_EQ(problemOf(R"({"a":")" + filling + R"("})").status, 200);
    EXPECT_EQ(problemOf(R"({"a":")" + filling + R"(x"})").status, 413);
    EXPECT_EQ(problemOf(std::string(9 * maxBodyBytes, '{')).status, 413);
}

TEST(RequestBodyTest, TooManyLevelsAreRefusedBeforeTheyAreBuilt)
{
    EXPECT_EQ(problemOf(nested(maxBodyDepth, '[', ']')).status, 200);
    EXPECT_EQ(problemOf(nested(maxBodyDepth + 1, '[', ']')).message, messages::bodyTooDeep);
    EXPECT_EQ(problemOf(nested(10'000, '[', ']')).message, messages::bodyTooDeep);
    std::string objects;
    for (int level = 0; level < 10'000; ++level)
        objects += R"({"a":)";
    EXPECT_EQ(problemOf(objects).message, messages::bodyTooDeep);
}

TEST(RequestBodyTest, BracketsInsideTextsAreNoLevels)
{
    const std::string brackets(1000, '[');
    EXPECT_EQ(problemOf(R"({"a":")" + brackets + R"(\"[[","b":"\\"})").status, 200);
}

TEST(FieldReaderTest, TextsAreReadAndTheirTypeIsChecked)
{
    const Json object =
        Json::parse(R"({"text":"值","number":1,"null":null,"list":[],"object":{}})");
    FieldReader good(object);
    EXPECT_EQ(good.text("text", 10), "值");
    EXPECT_EQ(good.textOr("missing", "fallback", 10), "fallback");
    EXPECT_FALSE(good.problem());

    for (const char* name : {"number", "null", "list", "object"}) {
        FieldReader bad(object);
        bad.textOr(name, "", 10);
        ASSERT_TRUE(bad.problem()) << name;
        EXPECT_EQ(bad.problem()->status, 400);
        EXPECT_NE(bad.problem()->message.find(name), std::string::npos);
    }
}

TEST(FieldReaderTest, AMissingTextIsRefused)
{
    const Json object = Json::object();
    FieldReader fields(object);
    fields.text("email", 10);
    ASSERT_TRUE(fields.problem());
    EXPECT_EQ(fields.problem()->status, 400);
    EXPECT_EQ(fields.problem()->message, "字段 email 缺失。");
}

TEST(FieldReaderTest, ATextTooLongIs413)
{
    const Json object{{"text", "12345"}};
    FieldReader fields(object);
    EXPECT_EQ(fields.text("text", 5), "12345");
    EXPECT_FALSE(fields.problem());
    fields.text("text", 4);
    EXPECT_EQ(fields.problem().value().status, 413);
}

TEST(FieldReaderTest, CountsAreWholeNumbersInTheirRange)
{
    const Json object = Json::parse(
        R"({"zero":0,"max":300,"above":301,"below":-1,"huge":18446744073709551615,"part":1.5,
            "text":"1","beyond":99999999999999999999})");
    FieldReader good(object);
    EXPECT_EQ(good.count("zero", 300), 0);
    EXPECT_EQ(good.count("max", 300), 300);
    EXPECT_FALSE(good.problem());

    for (const char* name : {"above", "below", "huge"}) {
        FieldReader bad(object);
        bad.count(name, 300);
        EXPECT_EQ(bad.problem().value().status, 422) << name;
    }
    for (const char* name : {"part", "text", "beyond", "missing"}) {
        FieldReader bad(object);
        bad.count(name, 300);
        EXPECT_EQ(bad.problem().value().status, 400) << name;
    }
}

TEST(FieldReaderTest, TheFirstProblemIsKept)
{
    const Json object{{"a", 1}, {"b", 2}};
    FieldReader fields(object);
    fields.text("a", 10);
    fields.text("b", 10);
    EXPECT_NE(fields.problem().value().message.find('a'), std::string::npos);
}

} // namespace
} // namespace tavrin::devcloud
