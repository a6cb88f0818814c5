// Random damage to the store's file: reading never fails, writing never loses what was readable.

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <sstream>

#include "backends/posix/ini_document.h"

namespace {

using posix::IniDocument;
using posix::IniValue;

using Entries = std::map<std::pair<std::wstring, std::wstring>, IniValue>;

constexpr std::string_view kPieces[] = {
    "[",  "]",     "=",      "\"",  "\n",      "\r\n",         "%{",   "}", "%",  ";",         "#",
    "\\", "[A]\n", "[A\\B]", "a=1", "b=\"x\"", "\xEF\xBB\xBF", "\xFF", " ", "\t", "4294967296"};

std::string randomBytes(std::mt19937& random, std::size_t length) {
    std::string bytes;
    while (bytes.size() < length) {
        if (random() % 2 == 0) {
            bytes += static_cast<char>(random() & 0xFF);
        } else {
            bytes += kPieces[random() % std::size(kPieces)];
        }
    }
    return bytes;
}

std::wstring randomText(std::mt19937& random) {
    constexpr std::uint32_t kCeilings[] = {0x80, 0x100, 0xE000, 0x120000};
    std::wstring text;
    for (std::size_t length = random() % 12; length > 0; --length) {
        const std::uint32_t ceiling = kCeilings[random() % 4];
        text += static_cast<wchar_t>(random() % ceiling);
    }
    return text;
}

/// A document with random entries whose names say nothing about one another's case.
IniDocument randomDocument(std::mt19937& random, Entries& entries) {
    IniDocument document;
    for (int i = 0; i < 12; ++i) {
        const std::wstring path = L"Key" + std::to_wstring(random() % 4) + L"\\\u00e4";
        const std::wstring name = L"name " + std::to_wstring(i);
        const IniValue value = random() % 2 == 0 ? IniValue(static_cast<std::uint32_t>(random()))
                                                 : IniValue(randomText(random));
        document.setValue(path, name, value);
        entries[{path, name}] = value;
    }
    return document;
}

std::string damaged(std::mt19937& random, std::string bytes) {
    for (std::size_t hits = 1 + random() % 6; hits > 0 && !bytes.empty(); --hits) {
        const std::size_t at = random() % bytes.size();
        switch (random() % 4) {
            case 0: bytes[at] = static_cast<char>(random() & 0xFF); break;
            case 1: bytes.erase(at, random() % 20); break;
            case 2: bytes.insert(at, randomBytes(random, random() % 20)); break;
            default: bytes.resize(at); break;
        }
    }
    return bytes;
}

std::vector<std::string> linesOf(const std::string& bytes) {
    std::vector<std::string> lines;
    std::istringstream in(bytes);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

/// How many lines of `before` stand unchanged at the start and at the end of `after`.
std::size_t unchangedAtEnds(const std::vector<std::string>& before,
                            const std::vector<std::string>& after) {
    std::size_t head = 0;
    while (head < before.size() && head < after.size() && before[head] == after[head]) ++head;
    std::size_t tail = 0;
    while (head + tail < before.size() && head + tail < after.size() &&
           before[before.size() - 1 - tail] == after[after.size() - 1 - tail]) {
        ++tail;
    }
    return head + tail;
}

TEST(IniFuzz, AnyBytesAreReadAndGivenBackUnchanged) {
    std::mt19937 random(1);
    for (int i = 0; i < 3000; ++i) {
        const std::string bytes = randomBytes(random, random() % 300);
        const IniDocument document(bytes);
        const bool complete = bytes.empty() || bytes.back() == '\n';
        ASSERT_EQ(document.bytes(), complete ? bytes : bytes + '\n') << "seed 1, round " << i;
        static_cast<void>(document.hasKey(L"A\\B"));
        static_cast<void>(document.value(L"A", L"a"));
    }
}

TEST(IniFuzz, WritingIntoAnyBytesIsReadBackAndKeepsEveryOtherLine) {
    std::mt19937 random(2);
    for (int i = 0; i < 3000; ++i) {
        const std::string before = randomBytes(random, random() % 300);
        IniDocument document(before);
        const std::wstring path = random() % 2 == 0 ? L"A" : L"A\\" + randomText(random) + L"z";
        const std::wstring name = random() % 2 == 0 ? L"a" : randomText(random);
        const std::wstring value = randomText(random);
        document.setValue(path, name, value);
        const IniDocument again(document.bytes());
        const auto stored = again.value(path, name);
        ASSERT_TRUE(stored && std::get<std::wstring>(*stored) == value) << "seed 2, round " << i;
        ASSERT_TRUE(again.hasKey(path));
        const std::vector<std::string> oldLines = linesOf(before);
        // At most the one line of the value itself is another one.
        ASSERT_GE(unchangedAtEnds(oldLines, linesOf(document.bytes())) + 1, oldLines.size());
    }
}

TEST(IniFuzz, EntriesThatADamagedFileStillShowsSurviveAWrite) {
    std::mt19937 random(3);
    std::size_t readable = 0;
    for (int i = 0; i < 2000; ++i) {
        Entries entries;
        const std::string bytes = damaged(random, randomDocument(random, entries).bytes());
        const IniDocument before(bytes);
        IniDocument after(bytes);
        after.setValue(L"Other\\Key", L"written", 1U);
        after.setValue(L"Key1\\\u00e4", L"written", L"too");
        const IniDocument again(after.bytes());
        for (const auto& [key, ignored] : entries) {
            const auto known = before.value(key.first, key.second);
            ASSERT_EQ(again.value(key.first, key.second), known) << "seed 3, round " << i;
            readable += known ? 1U : 0U;
        }
        ASSERT_EQ(again.value(L"Other\\Key", L"written"), IniValue(1U));
    }
    // The test would prove nothing if damage made everything unreadable.
    EXPECT_GT(readable, 2000U * 4U);
}

TEST(IniFuzz, DamageBetweenLinesLeavesEveryEntryReadable) {
    std::mt19937 random(4);
    for (int i = 0; i < 1000; ++i) {
        Entries entries;
        std::string bytes = randomDocument(random, entries).bytes();
        std::string littered;
        for (std::size_t start = 0; start < bytes.size();) {
            const std::size_t end = bytes.find('\n', start) + 1;
            std::string litter = randomBytes(random, random() % 10);
            // Litter that opens a section or sets a value is no litter.
            std::erase_if(litter, [](char c) { return c == '[' || c == '=' || c == '\n'; });
            littered += litter + '\n' + bytes.substr(start, end - start);
            start = end;
        }
        const IniDocument document(littered);
        for (const auto& [key, value] : entries) {
            ASSERT_EQ(document.value(key.first, key.second), value) << "seed 4, round " << i;
        }
    }
}

}  // namespace
