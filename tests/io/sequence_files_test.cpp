#include <gtest/gtest.h>

#include <qel.h>

#include <string>
#include <vector>

#include "support/test_images.h"

namespace {

using qel_test::TempFile;

// Initialises the library's list reader with a list file holding `text`.
bool init_with(const TempFile& file, const std::string& text) {
    qel_test::write_text(file.c_str(), text);
    return QelSequenceFiles_Initialize(const_cast<char*>(file.c_str()));
}

std::string line(int index, int size = 64) {
    std::string buf(static_cast<size_t>(size), 'x');
    return QelSequenceFiles_GetFileName(index, &buf[0], size) ? std::string(buf.c_str()) : "<false>";
}

std::string next(int size = 64) {
    std::string buf(static_cast<size_t>(size), 'x');
    return QelSequenceFiles_GetNextFileName(&buf[0], size) ? std::string(buf.c_str()) : "<false>";
}

// Runs first when the whole program runs in one process; under ctest every test has its own.
TEST(SequenceFiles, GettersFailBeforeAnyInitialize) {
    EXPECT_EQ(line(0), "<false>");
    EXPECT_EQ(next(), "<false>");
}

// The lines of each list, as found by index and in turn.
TEST(SequenceFiles, LinesEndAtCrLfWithTrailingSpacesRemoved) {
    struct Case {
        const char* what;
        std::string text;
        std::vector<std::string> lines;
    };
    const Case cases[] = {
        {"two lines", "a.bmp\r\nb.bmp\r\n", {"a.bmp", "b.bmp"}},
        {"a last line without line end is never returned", "a.bmp\r\nb.bmp", {"a.bmp"}},
        {"Unix line ends are not line ends", "a.bmp\nb.bmp\n", {}},
        {"trailing spaces go, leading spaces and tabs stay", "  a b.bmp   \r\nc.bmp\t \r\n   \r\n\r\n",
         {"  a b.bmp", "c.bmp\t", "", ""}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        TempFile file("list.txt");
        ASSERT_TRUE(init_with(file, c.text));
        const int n = static_cast<int>(c.lines.size());
        for (int i = 0; i < n; ++i) EXPECT_EQ(line(i), c.lines[i]);
        EXPECT_EQ(line(n), "<false>");
        EXPECT_EQ(line(-1), "<false>");
        for (int i = 0; i < n; ++i) {
            EXPECT_EQ(next(), c.lines[i]);
            EXPECT_EQ(line(0), c.lines[0]);  // does not move the cursor
        }
        EXPECT_EQ(next(), "<false>");
        EXPECT_EQ(next(), "<false>");
    }
}

TEST(SequenceFiles, LineNeedsRoomForItsTerminatorAndTheBufferIsZeroedEvenWhenFailing) {
    TempFile file("list.txt");
    ASSERT_TRUE(init_with(file, "abcd\r\nxy\r\n"));
    EXPECT_EQ(line(0, 4), "<false>");
    EXPECT_EQ(line(0, 5), "abcd");
    EXPECT_EQ(next(4), "<false>");
    EXPECT_EQ(next(4), "xy");  // the long line was skipped
    EXPECT_EQ(next(4), "<false>");

    char buf[4] = {'x', 'x', 'x', 'x'};
    EXPECT_FALSE(QelSequenceFiles_GetFileName(0, buf, 4));
    for (char c : buf) EXPECT_EQ(c, '\0');
    char big[8] = {'x', 'x', 'x', 'x', 'x', 'x', 'x', 'x'};
    EXPECT_TRUE(QelSequenceFiles_GetFileName(0, big, 8));
    EXPECT_EQ(std::string(big, 8), std::string("abcd\0\0\0\0", 8));
}

TEST(SequenceFiles, InitializeRewindsTheCursorAndReusesItsBuffer) {
    TempFile longer("long.txt"), shorter("short.txt");
    ASSERT_TRUE(init_with(longer, "first-long-name.bmp\r\nsecond.bmp\r\n"));
    EXPECT_EQ(next(), "first-long-name.bmp");
    ASSERT_TRUE(init_with(shorter, "s.bmp\r\n"));
    EXPECT_EQ(next(), "s.bmp");
    EXPECT_EQ(line(1), "<false>");  // nothing of the longer list shows through
    ASSERT_TRUE(init_with(shorter, ""));  // an empty list in an existing buffer reads fine
    EXPECT_EQ(line(0), "<false>");
}

TEST(SequenceFiles, FailedInitializeKeepsThePreviousLinesButRewinds) {
    TempFile file("list.txt");
    ASSERT_TRUE(init_with(file, "a.bmp\r\nb.bmp\r\n"));
    EXPECT_EQ(next(), "a.bmp");
    EXPECT_FALSE(QelSequenceFiles_Initialize(const_cast<char*>("/nonexistent-qel-dir/list.txt")));
    EXPECT_EQ(line(1), "b.bmp");
    EXPECT_EQ(next(), "a.bmp");
}

}  // namespace

namespace {

// The reader's state rules: its text grows and is reused, never shrinks, and stays what the last
// successful Initialize read until the next one.
TEST(SequenceFilesState, BufferGrowsForLargerListsAndIsReusedForSmallerOnes) {
    TempFile small("small.txt"), large("large.txt");
    const std::string longName(5000, 'n');
    ASSERT_TRUE(init_with(small, "a.bmp\r\n"));
    ASSERT_TRUE(init_with(large, "b.bmp\r\n" + longName + "\r\nc.bmp\r\n"));
    EXPECT_EQ(line(1, 6000), longName);
    EXPECT_EQ(line(2), "c.bmp");
    ASSERT_TRUE(init_with(small, "d.bmp\r\n"));
    EXPECT_EQ(line(0), "d.bmp");
    EXPECT_EQ(line(1, 6000), "<false>") << "the rest of the larger buffer is not text";
    ASSERT_TRUE(init_with(large, "e.bmp\r\n" + longName + longName + "\r\n"));
    EXPECT_EQ(line(1, 20000), longName + longName);
}

TEST(SequenceFilesState, LinesStayAsReadUntilTheNextInitialize) {
    TempFile file("list.txt");
    ASSERT_TRUE(init_with(file, "a.bmp\r\nb.bmp\r\n"));
    EXPECT_EQ(next(), "a.bmp");
    qel_test::write_text(file.c_str(), "x.bmp\r\ny.bmp\r\nz.bmp\r\n");  // the file changes on disk
    EXPECT_EQ(next(), "b.bmp");
    EXPECT_EQ(line(2), "<false>");
    std::remove(file.c_str());
    EXPECT_EQ(line(0), "a.bmp") << "the text was read whole by Initialize";
    EXPECT_EQ(next(), "<false>");
    ASSERT_TRUE(init_with(file, "z.bmp\r\n"));
    EXPECT_EQ(next(), "z.bmp");
}

}  // namespace
