#include "extract/no_case_index.h"

#include <gtest/gtest.h>

#include <deque>
#include <string>

namespace {

using extract::NoCaseIndex;

TEST(NoCaseIndex, FindsTheFirstOfEqualTexts) {
    NoCaseIndex index;
    index.Restart(3);
    EXPECT_EQ(index.Insert(L"Mass", 7), NoCaseIndex::kNone);
    EXPECT_EQ(index.Insert(L"MASS", 8), 7U);
    EXPECT_EQ(index.Insert(L"Mas", 9), NoCaseIndex::kNone);
    EXPECT_EQ(index.Find(L"mass"), 7U);
    EXPECT_EQ(index.Find(L"mas"), 9U);
    EXPECT_EQ(index.Find(L"masses"), NoCaseIndex::kNone);
}

TEST(NoCaseIndex, AnEmptyTextIsATextToo) {
    NoCaseIndex index;
    index.Restart(1);
    EXPECT_EQ(index.Find(L""), NoCaseIndex::kNone);
    EXPECT_EQ(index.Insert(L"", 0), NoCaseIndex::kNone);
    EXPECT_EQ(index.Find(L""), 0U);
}

TEST(NoCaseIndex, RestartingForgets) {
    NoCaseIndex index;
    EXPECT_EQ(index.Find(L"a"), NoCaseIndex::kNone);
    index.Restart(1);
    index.Insert(L"a", 0);
    index.Restart(0);
    EXPECT_EQ(index.Find(L"a"), NoCaseIndex::kNone);
}

TEST(NoCaseIndex, GrowsBeyondWhatWasExpected) {
    std::deque<std::wstring> texts;
    NoCaseIndex index;
    for (std::size_t i = 0; i < 5000; ++i) {
        texts.push_back(L"Key" + std::to_wstring(i));
        EXPECT_EQ(index.Insert(texts.back(), i), NoCaseIndex::kNone);
    }
    for (std::size_t i = 0; i < 5000; ++i) {
        EXPECT_EQ(index.Find(L"KEY" + std::to_wstring(i)), i);
    }
    EXPECT_EQ(index.Find(L"key5000"), NoCaseIndex::kNone);
}

}  // namespace
