#include "backends/occt/read/gzip.h"

#include <zlib.h>

#include <gtest/gtest.h>

namespace {

std::string packed(const std::string& bytes) {
    z_stream stream = {};
    EXPECT_EQ(deflateInit2(&stream, 6, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY), Z_OK);
    std::string out(deflateBound(&stream, bytes.size()) + 64, '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}

/// What came of unpacking: the bytes, or "code: text".
std::string unpacked(const std::string& bytes, std::uint64_t limit = 1 << 24) {
    std::string out = "before";
    const auto cause = occt::unpackGzip("a.stpz", bytes, limit, out);
    EXPECT_TRUE(!cause || out.empty());
    return cause ? cause->code + ": " + cause->text : out;
}

std::string text(std::size_t bytes) {
    std::string out;
    for (std::size_t i = 0; out.size() < bytes; ++i) out += "#" + std::to_string(i * i) + "=";
    out.resize(bytes);
    return out;
}

TEST(Gzip, BytesComeBackWhole) {
    for (const std::size_t size : {0U, 1U, 100000U, 1U << 20, (1U << 20) + 1}) {
        const std::string bytes = text(size);
        EXPECT_TRUE(occt::isGzip(packed(bytes)));
        EXPECT_TRUE(unpacked(packed(bytes)) == bytes) << size;
    }
}

TEST(Gzip, MembersFollowEachOtherAndPaddingMeansNothing) {
    EXPECT_EQ(unpacked(packed("ISO-10303") + packed("-21;")), "ISO-10303-21;");
    EXPECT_EQ(unpacked(packed("ISO") + std::string(512, '\0')), "ISO");
}

TEST(Gzip, AFileThatWasCutIsDamaged) {
    const std::string whole = packed(text(300000));
    for (std::size_t size = 3; size < whole.size(); size += 1 + whole.size() / 60) {
        EXPECT_EQ(unpacked(whole.substr(0, size)), "damaged: a.stpz is damaged: it ends at byte " +
                                                       std::to_string(size) +
                                                       ", before its data end.");
    }
}

TEST(Gzip, AFileThatWasChangedIsDamaged) {
    const std::string whole = packed(text(300000));
    for (const std::size_t at : {3 * whole.size() / 4, whole.size() - 6}) {
        std::string changed = whole;
        changed[at] = static_cast<char>(changed[at] ^ 0x55);
        const std::string said = unpacked(changed);
        EXPECT_EQ(said.substr(0, 30), "damaged: a.stpz is damaged: it") << said.substr(0, 100);
    }
}

TEST(Gzip, NoMoreThanTheLimitIsUnpacked) {
    const std::string bomb = packed(std::string(5'000'000, 'x'));
    EXPECT_LT(bomb.size(), 100'000U);
    EXPECT_EQ(unpacked(bomb, 1'000'000),
              "too-large: a.stpz is too large: it unpacks into more than 1000000 bytes.");
    EXPECT_EQ(unpacked(packed("12345"), 5), "12345");
    EXPECT_NE(unpacked(packed("123456"), 5), "123456");
}

}  // namespace
