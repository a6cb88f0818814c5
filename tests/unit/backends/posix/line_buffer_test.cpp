#include "backends/posix/line_buffer.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using posix::LineBuffer;

TEST(LineBuffer, CutsAtLineFeedsWhateverThePieces) {
    const std::string stream = "one\ntwo\n\nfour, longer\nfive";
    for (std::size_t piece = 1; piece <= stream.size(); ++piece) {
        LineBuffer buffer;
        for (std::size_t i = 0; i < stream.size(); i += piece) buffer.feed(stream.substr(i, piece));
        EXPECT_EQ(buffer.next(), "one");
        EXPECT_EQ(buffer.next(), "two");
        EXPECT_EQ(buffer.next(), "");
        EXPECT_EQ(buffer.next(), "four, longer");
        EXPECT_EQ(buffer.next(), std::nullopt) << "a line without its end is none yet";
        buffer.feed("\n");
        EXPECT_EQ(buffer.next(), "five");
    }
}

TEST(LineBuffer, LongestLineIsWholeAndTheNextOneIsCut) {
    for (const std::size_t piece : {std::size_t{1000}, LineBuffer::kLongestLine * 4}) {
        LineBuffer buffer;
        const std::string stream = std::string(LineBuffer::kLongestLine, 'a') + '\n' +
                                   std::string(LineBuffer::kLongestLine * 3, 'b') + "\nnext\n";
        for (std::size_t i = 0; i < stream.size(); i += piece) buffer.feed(stream.substr(i, piece));
        EXPECT_EQ(buffer.next(), std::string(LineBuffer::kLongestLine, 'a'));
        EXPECT_EQ(buffer.next(), std::string(LineBuffer::kLongestLine, 'b'));
        EXPECT_EQ(buffer.next(), "next");
        EXPECT_EQ(buffer.next(), std::nullopt);
    }
}

TEST(LineBuffer, CutNeverSplitsACharacter) {
    const std::string character = "\xE9\xBD\xBF";
    for (std::size_t lead = 0; lead < 3; ++lead) {
        LineBuffer buffer;
        std::string line(lead, 'x');
        while (line.size() < LineBuffer::kLongestLine + 10) line += character;
        buffer.feed(line + '\n');
        const std::string cut = buffer.next().value_or("");
        EXPECT_LE(cut.size(), LineBuffer::kLongestLine);
        EXPECT_GT(cut.size(), LineBuffer::kLongestLine - 4);
        EXPECT_EQ((cut.size() - lead) % 3, 0U);
    }
}

TEST(LineBuffer, CutOfNothingButContinuationBytesStands) {
    LineBuffer buffer;
    buffer.feed(std::string(LineBuffer::kLongestLine + 10, '\x80') + "\nnext\n");
    EXPECT_GE(buffer.next().value_or("").size(), LineBuffer::kLongestLine - 4);
    EXPECT_EQ(buffer.next(), "next");
}

TEST(LineBuffer, ZeroBytesBelongToTheLine) {
    LineBuffer buffer;
    buffer.feed(std::string_view("a\0b\n", 4));
    EXPECT_EQ(buffer.next(), std::string("a\0b", 3));
}

TEST(LineBuffer, CountsWhatWaits) {
    LineBuffer buffer;
    EXPECT_EQ(buffer.waitingBytes(), 0U);
    buffer.feed("12345\n\n");
    EXPECT_GE(buffer.waitingBytes(), 5U + 2 * sizeof(std::string));
    buffer.next();
    buffer.next();
    EXPECT_EQ(buffer.waitingBytes(), 0U);
}

TEST(LineBuffer, RandomStreamsGiveTheSameLinesInAnyPieces) {
    std::mt19937 random(6);
    for (int round = 0; round < 50; ++round) {
        std::string stream;
        for (int i = 0; i < 30; ++i) {
            const std::size_t length =
                random() % 8 == 0 ? 60'000 + random() % 20'000 : random() % 50;
            stream += std::string(length, static_cast<char>(random() & 0xFF)) + '\n';
        }
        LineBuffer atOnce;
        LineBuffer inPieces;
        atOnce.feed(stream);
        for (std::size_t i = 0; i < stream.size();) {
            const std::size_t piece = 1 + random() % 30'000;
            inPieces.feed(std::string_view(stream).substr(i, piece));
            i += piece;
        }
        while (atOnce.hasLine()) {
            const auto expected = atOnce.next();
            ASSERT_EQ(inPieces.next(), expected);
            ASSERT_LE(expected->size(), LineBuffer::kLongestLine);
        }
        ASSERT_FALSE(inPieces.hasLine());
    }
}

}  // namespace
