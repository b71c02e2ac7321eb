// Words for people: what they may have meant, and where a text is no JSON.
#include "format/text.h"

#include "format/input_error.h"
#include "format/json_value.h"
#include "scene_fixture.h"

using namespace voxam;

namespace {

TEST(Text, guessesWhatWasMeant) {
    const std::vector<std::string> words = {"loads", "loadCases", "supports", "penalty", "x", "xy"};
    EXPECT_EQ(didYouMean("load", words), ", did you mean loads?");
    EXPECT_EQ(didYouMean("lo", words), ", did you mean loads or loadCases?");
    EXPECT_EQ(didYouMean("suports", words), ", did you mean supports?");
    EXPECT_EQ(didYouMean("laods", words), ", did you mean loads?");
    EXPECT_EQ(didYouMean("XY", words), ", did you mean xy?");
    EXPECT_EQ(didYouMean("colour", words), "");
    EXPECT_EQ(didYouMean("z", words), "");
    EXPECT_EQ(didYouMean("", words), "");
    EXPECT_EQ(didYouMean(std::string(100000, 'l'), words), "");
}

TEST(Text, staysShortAndOnOneLine) {
    EXPECT_LT(quoted(std::string(100000, 'l')).size(), 80u);
    EXPECT_EQ(shortened("abcdefghij", 7), "ab...ij");
    EXPECT_EQ(shortened("\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4", 10),
              "\u00e4...\u00e4");  // not cut in two
    EXPECT_EQ(onOneLine("a\nb\tc\x7f"), "a b c ");
    EXPECT_EQ(onOneLine("\u00e4\u0085\u009b\u2028\u2029\u2030"), "\u00e4    \u2030");
}

TEST(Text, wrapsAtBlanks) {
    const std::string text = "  key    one two \u00e4\u00e4\u00e4 four";
    EXPECT_EQ(wrapped(text, 80, 9), text);
    EXPECT_EQ(wrapped(text, 16, 9), "  key    one two\n         \u00e4\u00e4\u00e4\n         four");
    EXPECT_EQ(wrapped(text, 17, 9), "  key    one two\n         \u00e4\u00e4\u00e4 four");
    EXPECT_EQ(wrapped("has 15.3 % of 20 %", 16, 2), "has 15.3 % of\n  20 %");
    // A word that is too long stays whole, and a line has one at least.
    EXPECT_EQ(wrapped("voxam: abcdefghij k", 9, 7), "voxam: abcdefghij\n       k");
}

TEST(Text, tellsNumbersAsPeopleWriteThem) {
    EXPECT_EQ(plainNumber(-1e6), "-1000000");
    EXPECT_EQ(plainNumber(0.01), "0.01");
    EXPECT_EQ(plainNumber(1 + 1e-12), "1.000000000001");
    EXPECT_EQ(plainNumber(1e20), "1e+20");
    EXPECT_EQ(counted(1, "row") + counted(0, "row"), "1 row0 rows");
}

TEST(JsonError, tellsPlaceAndExpectationInPlainWords) {
    const struct {
        const char* text;
        const char* told;
    } cases[] = {
        {"{\n \"a\": 1,\n}",
         "line 3, column 1: expected a key in double quotes, found '}'; "
         "remove the comma before it"},
        {"{\"a\": [1, 2,]}",
         "line 1, column 13: expected a value: a number, a text in double "
         "quotes, true, false, null, [ or {, found ']'; remove the comma "
         "before it"},
        {"{\"a\": 1\n \"b\": 2}", "line 2, column 4: expected a comma or }, found a text"},
        {"[1 2]", "line 1, column 4: expected a comma or ], found a number"},
        {"{a: 1}", "line 1, column 2: expected a key in double quotes, found 'a'"},
        {"{\"a\" 1}", "line 1, column 6: expected a colon after the key, found a number"},
        {"{\"a\": \"b}", "line 1, column 10: found a text without its closing quote"},
        {"{\"a\": \"b\n\"}",
         "line 1, column 9: found a line break or control character within a "
         "text; is a closing quote missing?"},
        {"{\"a\": 1", "line 1, column 8: expected a comma or }, found the end of the file"},
        {"",
         "line 1, column 1: expected a value: a number, a text in double quotes, true, false, "
         "null, [ or {, found the end of the file"},
        {"{} {}", "line 1, column 4: expected nothing more: the scene is complete, found '{'"},
        {"[1e999]", "line 1, column 6: a number is too large for any computer"},
        {"{\"a\": 1.}", "line 1, column 9: found a number without digits after its point"},
        {"/* never closed", "line 1, column 16: found a comment without its end, */"},
    };
    for (const auto& [text, told] : cases) {
        SCOPED_TRACE(text);
        try {
            parseJson(text, "s.json");
            ADD_FAILURE();
        } catch (const InputError& error) {
            EXPECT_EQ(std::string(error.what()), std::string("s.json: ") + told);
        }
    }
    try {
        parseJson("{\"a\\\"b\": {\"c\": 1},\n  \"a\\\"b\": 2}", "s.json");
        ADD_FAILURE();
    } catch (const InputError& error) {
        EXPECT_EQ(std::string(error.what()),
                  "s.json: line 2, column 3: the key \"a\"b\" appears twice in the same object, "
                  "first at line 1, column 2: remove one of them");
    }
    EXPECT_NO_THROW(parseJson("// a comment\n{\"a\": /* another */ 1}", "s.json"));
}

}  // namespace
