// The qel tool's JSON writer: quoting, layout, and reals that read back.
#include "common/json.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <sstream>
#include <string>

namespace {

TEST(Json, StringsEscapeQuotesBackslashesAndControlCharacters) {
    EXPECT_EQ(cli::jsonQuoted("plain"), "\"plain\"");
    EXPECT_EQ(cli::jsonQuoted("a\"b\\c"), "\"a\\\"b\\\\c\"");
    EXPECT_EQ(cli::jsonQuoted("1\n2\t3\r\x01"), "\"1\\n2\\t3\\r\\u0001\"");
    EXPECT_EQ(cli::jsonQuoted("caf\xC3\xA9"), "\"caf\xC3\xA9\"") << "UTF-8 passes through";
}

TEST(Json, NestedValuesAreIndentedWithCommasBetween) {
    std::ostringstream out;
    cli::JsonWriter json(out);
    json.beginObject()
        .key("a").value(1)
        .key("b").beginArray().value(true).value("x").endArray()
        .key("c").beginObject().endObject()
        .key("d").beginArray().endArray()
        .endObject();
    EXPECT_EQ(out.str(), "{\n  \"a\": 1,\n  \"b\": [\n    true,\n    \"x\"\n  ],\n  \"c\": {},\n  \"d\": []\n}\n");
}

TEST(Json, ArrayOfObjectsAndALoneValue) {
    std::ostringstream out;
    cli::JsonWriter json(out);
    json.beginArray().beginObject().key("n").value(-3).endObject().beginObject().endObject().endArray();
    EXPECT_EQ(out.str(), "[\n  {\n    \"n\": -3\n  },\n  {}\n]\n");
    std::ostringstream single;
    cli::JsonWriter(single).value("only");
    EXPECT_EQ(single.str(), "\"only\"\n");
}

std::string written(double v, int decimals = -1) {
    std::ostringstream out;
    cli::JsonWriter json(out);
    if (decimals < 0)
        json.value(v);
    else
        json.value(v, decimals);
    std::string text = out.str();
    text.pop_back();  // the newline after a lone value
    return text;
}

TEST(Json, RealsAreShortestThatReadBackAndNonFiniteIsNull) {
    EXPECT_EQ(written(0.1), "0.1");
    EXPECT_EQ(written(-2.0), "-2");
    EXPECT_EQ(written(2.5, 2), "2.50");
    EXPECT_EQ(written(1.0 / 3.0, 3), "0.333");
    EXPECT_EQ(written(std::nan("")), "null");
    EXPECT_EQ(written(std::numeric_limits<double>::infinity(), 2), "null");
    std::mt19937_64 rng(5);
    std::uniform_real_distribution<double> any(-1e6, 1e6);
    for (int i = 0; i < 1000; ++i) {
        const double v = any(rng);
        EXPECT_EQ(std::strtod(written(v).c_str(), nullptr), v) << written(v);
    }
}

}  // namespace
