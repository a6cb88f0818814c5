#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace fuzz {

/// Ends the program with the sentence when a harness finds that it does not hold.
void require(bool holds, const char* sentence);

/// Whether the bytes are UTF-8 from end to end.
bool isUtf8(std::string_view bytes);

/// Requires that the work does not take much longer than in proportion to the length of its
/// text. `grow` gives a text made of that many copies of the input. Takes long itself, so that
/// only few inputs are timed, unless timeEveryInput() was called.
void requireLinear(std::string_view input, const std::function<std::string(std::size_t)>& grow,
                   const std::function<void(const std::string&)>& work);

/// The same for copies that just follow one another.
void requireLinear(std::string_view input, const std::function<void(const std::string&)>& work);

void timeEveryInput(bool every);

}  // namespace fuzz
