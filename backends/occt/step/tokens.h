#pragma once

#include <cstdint>
#include <string_view>

#include "backends/occt/step/part21.h"

namespace occt::step {

/// Takes the parts of one statement in their order. Texts stay valid as long as the file's.
class TokenSink {
public:
    enum class Token { Integer, Real, Text, Word, Binary, Missing, Derived };

    TokenSink() = default;
    virtual ~TokenSink() = default;
    TokenSink(const TokenSink&) = delete;
    TokenSink& operator=(const TokenSink&) = delete;

    /// A keyword with the parameters of an instance begins; several for a complex one.
    virtual void beginRecord(std::string_view keyword) = 0;
    /// The parameters are over.
    virtual void endRecord() = 0;
    /// A list within parameters; with the keyword of a typed parameter, else without.
    virtual void beginList(std::string_view keyword) = 0;
    virtual void endList() = 0;
    virtual void reference(std::uint64_t id) = 0;
    /// `text` as written, with its quotes or dots.
    virtual void value(Token token, std::string_view text) = 0;
};

/// Reads a statement in one go, without building values: for what is done to every instance of a
/// large file. Strict: false for anything that is not written as the standard says, after parts
/// of it may have been handed out.
bool readTokens(const Part21& file, const Instance& instance, TokenSink& sink);

}  // namespace occt::step
