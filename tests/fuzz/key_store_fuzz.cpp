// The key store's text: what is read, and that a write keeps all the rest.

#include <algorithm>

#include "backends/posix/ini_document.h"
#include "backends/posix/ini_text.h"
#include "platform/os/utf8.h"
#include "tests/fuzz/bytes.h"
#include "tests/fuzz/fuzz.h"

namespace {

using posix::IniDocument;

void textComesBack(const std::wstring& text) {
    for (const std::wstring_view special : {L"", L"[]", L"[]=;#\"", L"\""}) {
        const std::string escaped = posix::escapeIniText(text, special);
        fuzz::require(posix::unescapeIniText(escaped) == text, "escaped text comes back");
        fuzz::require(escaped.find_first_of("\r\n") == std::string::npos, "a text is one line");
    }
}

std::size_t linesOf(std::string_view text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

std::size_t carriageReturnsOf(const std::string& text) {
    std::size_t count = 0;
    for (std::size_t at = text.find("\r\n"); at != std::string::npos;
         at = text.find("\r\n", at + 2)) {
        ++count;
    }
    return count;
}

void readAndWrite(std::string_view text) {
    IniDocument document(text);
    static_cast<void>(document.value(L"Software\\Key", L"Name"));
    document.setValue(L"Other", L"Name", 1U);
    static_cast<void>(document.bytes());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Bytes bytes(data, size);
    const bool isNumber = bytes.flag();
    const auto number = static_cast<std::uint32_t>(bytes.word());
    const std::wstring words = bytes.wide(24);
    const posix::IniValue value = isNumber ? posix::IniValue(number) : posix::IniValue(words);
    const std::wstring path = bytes.flag() ? bytes.wide(16) : L"Software\\Key";
    const std::wstring name = bytes.flag() ? bytes.wide(8) : L"Name";
    const std::string before(bytes.rest());

    const IniDocument document(before);
    const bool whole = before.empty() || before.back() == '\n';
    const std::string kept = whole ? before : before + '\n';
    fuzz::require(document.bytes() == kept, "a document that is only read stays as it is");

    IniDocument changed(before);
    changed.setValue(path, name, value);
    const IniDocument again(changed.bytes());
    fuzz::require(changed.value(path, name) == value, "a value can be read after it was set");
    fuzz::require(again.value(path, name) == value, "a value can be read after it was written");
    fuzz::require(again.hasKey(path), "a value's key exists");
    fuzz::require(linesOf(changed.bytes()) <= linesOf(kept) + 2, "a write adds two lines at most");
    fuzz::require(carriageReturnsOf(changed.bytes()) >= carriageReturnsOf(kept),
                  "a line keeps its own kind of end");
    const std::wstring_view otherName = L"something else";
    if (posix::asciiLower(name) != otherName) {
        fuzz::require(again.value(path, otherName) == document.value(path, otherName),
                      "other values stay");
    }
    IniDocument twice(changed.bytes());
    twice.setValue(path, name, value);
    fuzz::require(twice.bytes() == changed.bytes(), "writing the same again changes nothing");
    IniDocument withKey(before);
    withKey.addKey(path);
    fuzz::require(IniDocument(withKey.bytes()).hasKey(path), "a key that was added exists");

    textComesBack(words);
    textComesBack(path);
    textComesBack(os::toWide(before));
    fuzz::requireLinear(before, readAndWrite);
    return 0;
}
