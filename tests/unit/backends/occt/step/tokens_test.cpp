#include "backends/occt/step/tokens.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "tests/unit/backends/occt/step/step_file.h"

namespace {

using occt::step::TokenSink;

/// Writes down what it gets.
class Writer : public TokenSink {
public:
    void beginRecord(std::string_view keyword) override { text += std::string(keyword) + "<"; }
    void endRecord() override { text += ">"; }
    void beginList(std::string_view keyword) override { text += std::string(keyword) + "["; }
    void endList() override { text += "]"; }
    void reference(std::uint64_t id) override { text += " #" + std::to_string(id); }
    void value(Token token, std::string_view raw) override {
        constexpr const char* names[] = {"int", "real", "text", "word", "bin", "none", "derived"};
        text += " " + std::string(names[static_cast<int>(token)]) + ":" + std::string(raw);
    }

    std::string text;
};

/// What is read of the one instance of a file; "refused" where that is so.
std::string tokens(const std::string& body) {
    const step_test::StepFile file("#1=" + body + ";");
    if (file.file.instances().size() != 1) return "no instance";
    Writer writer;
    const bool good = readTokens(file.file, file.file.instances()[0], writer);
    return good ? writer.text : "refused";
}

TEST(Tokens, KindsOfValuesAreToldApart) {
    EXPECT_EQ(tokens("A('x',#12,3,-4.5,.T.,\"0F\",$,*)"),
              "A< text:'x' #12 int:3 real:-4.5 word:.T. bin:\"0F\" none:$ derived:*>");
    EXPECT_EQ(tokens("A(1.,+2.E-07,-.5,.5E3,0)"),
              "A< real:1. real:+2.E-07 real:-.5 real:.5E3 int:0>");
}

TEST(Tokens, ListsAndTypedParametersNest) {
    EXPECT_EQ(tokens("A((),(#1,(2)),B(3.),())"), "A<[][ #1[ int:2]]B[ real:3.][]>");
    EXPECT_EQ(tokens("A()"), "A<>");
}

TEST(Tokens, ComplexInstancesHaveSeveralRecords) {
    EXPECT_EQ(tokens("(A(1)B()C('x'))"), "A< int:1>B<>C< text:'x'>");
}

TEST(Tokens, BlanksAndCommentsStandAnywhere) {
    EXPECT_EQ(tokens(" A ( 1 ,\n /* , 7 */ #2\t) "), "A< int:1 #2>");
}

TEST(Tokens, TextsKeepQuotesAndSeparators) {
    EXPECT_EQ(tokens("A('it''s; (a) #1, /*b*/')"), "A< text:'it''s; (a) #1, /*b*/'>");
}

TEST(Tokens, WhatTheStandardDoesNotKnowIsRefused) {
    for (const char* body : {"A(1,)", "A(,1)", "A(1 2)", "A(#)", "A(1.e5)", "A(1E5)", "A(--1)",
                             "A(.x.)", "A(.T)", "a(1)", "A(b(1))", "A(1.2.3)", "A(1.E)", "A(+)",
                             "(A(1)2)", "A(1)B(2)", "A(\"xyz\")", "A(#1#2)", "A(@)"}) {
        EXPECT_EQ(tokens(body), "refused") << body;
    }
}

}  // namespace
