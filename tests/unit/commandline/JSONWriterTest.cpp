#include "JSONWriter.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace orvane {
namespace {

std::string textOf(std::string_view value) {
    JSONWriter writer;
    writer.string(value);
    return writer.text();
}

TEST(JSONWriter, PutsCommasBetweenMembersAndElementsOnly) {
    JSONWriter writer;
    writer.beginObject().key("a").beginArray().endArray().key("b").beginArray().number(1).number(-2).beginObject().endObject();
    writer.endArray().key("c").null().key("d").boolean(true).key("e").stringOrNull({}).endObject();
    EXPECT_EQ(writer.text(), R"({"a":[],"b":[1,-2,{}],"c":null,"d":true,"e":null})");
}

TEST(JSONWriter, EscapesWhatMustBeEscaped) {
    EXPECT_EQ(textOf("\"\\/\b\f\n\r\t"), R"("\"\\/\b\f\n\r\t")");
    EXPECT_EQ(textOf(std::string_view("\0\x1f\x7f", 3)), R"("\u0000\u001f\u007f")");
}

TEST(JSONWriter, EveryTextReadsBackTheSame) {
    for (const std::string text : {"", "plain", "Grüße 😀", "a\u202Eb", "e\u0301", "tab\tquote\" back\\slash", "\u0085\u2028"}) {
        EXPECT_EQ(nlohmann::json::parse(textOf(text)).get<std::string>(), text);
    }
}

TEST(JSONWriter, BytesThatAreNoUTF8BecomeReplacementCharacters) {
    EXPECT_EQ(nlohmann::json::parse(textOf("a\xFF"
                                           "b\xC3"))
                  .get<std::string>(),
              "a\uFFFDb\uFFFD");
    EXPECT_EQ(nlohmann::json::parse(textOf("\xED\xA0\x80")).get<std::string>(), "\uFFFD");
    EXPECT_EQ(nlohmann::json::parse(textOf("\xC0\xAF")).get<std::string>(), "\uFFFD\uFFFD");
}

TEST(JSONWriter, KeysAreEscapedToo) {
    JSONWriter writer;
    writer.beginObject().key("a\"b").number(1).endObject();
    EXPECT_EQ(writer.text(), R"({"a\"b":1})");
}

} // namespace
} // namespace orvane
