#include "apps/cli/options.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using cli::Colour;
using cli::ParsedArguments;

ParsedArguments parse(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "bextora");
    return cli::parseArguments(static_cast<int>(arguments.size()), arguments.data());
}

TEST(CliOptions, TwoFilesAndTheDefaults) {
    const ParsedArguments parsed = parse({"a.stp", "b.stp"});
    ASSERT_TRUE(parsed.options);
    EXPECT_EQ(parsed.options->referencePath, "a.stp");
    EXPECT_EQ(parsed.options->comparePath, "b.stp");
    EXPECT_FALSE(parsed.options->json);
    EXPECT_FALSE(parsed.options->changesOnly);
    EXPECT_FALSE(parsed.options->status);
    EXPECT_EQ(parsed.options->colour, Colour::Auto);
    EXPECT_EQ(parsed.options->memoryLimitBytes, 0U);
    EXPECT_EQ(parsed.options->timeLimitMs, 0U);
    EXPECT_TRUE(parsed.options->keepResult.empty());
    EXPECT_TRUE(parsed.options->exitOn.structure);
    EXPECT_TRUE(parsed.options->exitOn.geometry);
    EXPECT_TRUE(parsed.options->exitOn.placement);
}

TEST(CliOptions, EveryOptionIsRead) {
    const ParsedArguments parsed =
        parse({"--json", "--changes-only", "--color", "always", "--status", "--memory-limit", "2G",
               "--time-limit", "90s", "--keep-result", "out.glb", "--exit-on", "geometry", "a.stp",
               "b.stp"});
    ASSERT_TRUE(parsed.options) << parsed.standardError;
    EXPECT_TRUE(parsed.options->json);
    EXPECT_TRUE(parsed.options->changesOnly);
    EXPECT_TRUE(parsed.options->status);
    EXPECT_EQ(parsed.options->colour, Colour::Always);
    EXPECT_EQ(parsed.options->memoryLimitBytes, std::uint64_t{2} << 30);
    EXPECT_EQ(parsed.options->timeLimitMs, 90000U);
    EXPECT_EQ(parsed.options->keepResult, "out.glb");
    EXPECT_FALSE(parsed.options->exitOn.structure);
    EXPECT_TRUE(parsed.options->exitOn.geometry);
    EXPECT_FALSE(parsed.options->exitOn.placement);
}

TEST(CliOptions, PathsAreTakenAsTheyStand) {
    for (const char* path : {"with space.stp", "\"quoted\".stp", "it's.stp", "[a,b].stp", "{}",
                             "new\nline.stp", "\xff\xfe.stp", "%d", "a=b.stp", "a\\b.stp", "+x"}) {
        const ParsedArguments parsed = parse({path, "b.stp"});
        ASSERT_TRUE(parsed.options) << path << parsed.standardError;
        EXPECT_EQ(parsed.options->referencePath, path);
    }
    const ParsedArguments dashed = parse({"--", "-a.stp", "--json"});
    ASSERT_TRUE(dashed.options) << dashed.standardError;
    EXPECT_EQ(dashed.options->referencePath, "-a.stp");
    EXPECT_EQ(dashed.options->comparePath, "--json");
    EXPECT_FALSE(dashed.options->json);
}

TEST(CliOptions, BadArgumentsAreTroubleAndSayWhich) {
    struct Row {
        std::vector<const char*> arguments;
        const char* named;
    };
    const Row rows[] = {
        {{}, "REFERENCE"},
        {{"a.stp"}, "COMPARE"},
        {{"a", "b", "third-file"}, "third-file"},
        {{"--nonsense", "a", "b"}, "--nonsense"},
        {{"--color", "mauve", "a", "b"}, "mauve"},
        {{"--memory-limit", "lots", "a", "b"}, "lots"},
        {{"--memory-limit", "0", "a", "b"}, "--memory-limit"},
        {{"--time-limit", "-1", "a", "b"}, "--time-limit"},
        {{"--time-limit", "5y", "a", "b"}, "5y"},
        {{"--keep-result", "out.step", "a", "b"}, "out.step"},
        {{"--exit-on", "names", "a", "b"}, "names"},
        {{"--exit-on", "geometry,", "a", "b"}, "geometry,"},
    };
    for (const Row& row : rows) {
        const ParsedArguments parsed = parse(row.arguments);
        EXPECT_FALSE(parsed.options) << row.named;
        EXPECT_EQ(parsed.exitCode, 2) << row.named;
        EXPECT_TRUE(parsed.standardOutput.empty()) << row.named;
        EXPECT_NE(parsed.standardError.find(row.named), std::string::npos) << parsed.standardError;
        EXPECT_NE(parsed.standardError.find("--help"), std::string::npos) << parsed.standardError;
    }
}

TEST(CliOptions, ErrorsNeverPassControlCharactersOn) {
    const ParsedArguments parsed = parse({"--color", "\x1b[31m", "a", "b"});
    EXPECT_EQ(parsed.exitCode, 2);
    EXPECT_EQ(parsed.standardError.find('\x1b'), std::string::npos);
}

TEST(CliOptions, HelpAndVersionGoToStandardOutputAndAreNoError) {
    const ParsedArguments help = parse({"--help"});
    EXPECT_FALSE(help.options);
    EXPECT_EQ(help.exitCode, 0);
    for (const char* part : {"--json", "--changes-only", "--color", "auto|always|never", "--status",
                             "--memory-limit", "--time-limit", "--keep-result", "--exit-on",
                             "--version", "Examples:", "Words:", "Exit code:"}) {
        EXPECT_NE(help.standardOutput.find(part), std::string::npos) << part;
    }
    const ParsedArguments version = parse({"--version"});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_EQ(version.standardOutput, "bextora " BEXTORA_VERSION "\n");
}

TEST(CliOptions, SizesTakeUnitsAndRefuseEverythingElse) {
    EXPECT_EQ(cli::parseSize("100000"), 100000U);
    EXPECT_EQ(cli::parseSize("4K"), 4096U);
    EXPECT_EQ(cli::parseSize("512M"), std::uint64_t{512} << 20);
    EXPECT_EQ(cli::parseSize("1T"), std::uint64_t{1} << 40);
    EXPECT_EQ(cli::parseSize("2g"), cli::parseSize("2G"));
    EXPECT_EQ(cli::parseSize("3k"), 3072U);
    for (const char* text : {"", "0", "G", "1.5G", "-1", " 1", "1 G", "1x", "99999999999999999999",
                             "99999999T", "1GB"}) {
        EXPECT_FALSE(cli::parseSize(text)) << text;
    }
}

TEST(CliOptions, DurationsTakeUnitsAndRefuseEverythingElse) {
    EXPECT_EQ(cli::parseDuration("90"), 90000U);
    EXPECT_EQ(cli::parseDuration("90s"), 90000U);
    EXPECT_EQ(cli::parseDuration("10m"), 600000U);
    EXPECT_EQ(cli::parseDuration("2h"), 7200000U);
    for (const char* text : {"", "0", "s", "1d", "1.5h", "-5", "2000h"}) {
        EXPECT_FALSE(cli::parseDuration(text)) << text;
    }
}

TEST(CliOptions, KeptResultsAreBinaryDocumentsOrGlb) {
    EXPECT_TRUE(cli::isKeepable("a.xbf"));
    EXPECT_TRUE(cli::isKeepable("dir/a.glb"));
    EXPECT_TRUE(cli::isKeepable("a.GLB"));
    for (const char* path : {"", ".glb", "a.gltf", "a.step", "glb"}) {
        EXPECT_FALSE(cli::isKeepable(path)) << path;
    }
}

TEST(CliOptions, TolerancesOfTheGeometryAreRead) {
    const ParsedArguments parsed =
        parse({"--geometry", "--tolerance", "0.01", "--angle-tolerance", "2", "a.stp", "b.stp"});
    ASSERT_TRUE(parsed.options) << parsed.standardError;
    EXPECT_TRUE(parsed.options->geometry);
    EXPECT_EQ(parsed.options->lengthToleranceMm, 0.01);
    EXPECT_EQ(parsed.options->angleToleranceDeg, 2.0);
    const ParsedArguments bare = parse({"a.stp", "b.stp"});
    ASSERT_TRUE(bare.options);
    EXPECT_FALSE(bare.options->geometry);
    EXPECT_EQ(bare.options->lengthToleranceMm, 0.0);
    EXPECT_EQ(bare.options->angleToleranceDeg, 0.0);
}

TEST(CliOptions, TolerancesAreFiniteNumbersAboveZero) {
    EXPECT_EQ(cli::parseTolerance("0.001"), 0.001);
    EXPECT_EQ(cli::parseTolerance("25"), 25.0);
    for (const char* wrong : {"", "0", "-1", "0,1", "1mm", "1e-3", "inf", "nan", " 1", "+1"}) {
        EXPECT_FALSE(cli::parseTolerance(wrong)) << wrong;
    }
    EXPECT_EQ(parse({"--tolerance", "0", "a.stp", "b.stp"}).exitCode, cli::exit_code::Trouble);
}

TEST(CliOptions, SectionsAreAllButPartsUnlessTheyAreNamed) {
    const auto plain = parse({"a", "b"});
    ASSERT_TRUE(plain.options);
    EXPECT_TRUE(plain.options->sections.structure && plain.options->sections.file &&
                plain.options->sections.bom && plain.options->sections.attributes &&
                plain.options->sections.pmi && plain.options->sections.geometry);
    EXPECT_FALSE(plain.options->sections.parts);
    EXPECT_FALSE(plain.options->openStructure);
    EXPECT_TRUE(parse({"--parts", "a", "b"}).options->sections.parts);
    const auto two = parse({"--sections", "pmi,structure", "a", "b"});
    ASSERT_TRUE(two.options) << two.standardError;
    EXPECT_TRUE(two.options->sections.pmi && two.options->sections.structure);
    EXPECT_FALSE(two.options->sections.bom || two.options->sections.geometry);
    EXPECT_TRUE(two.options->openStructure);
    EXPECT_TRUE(parse({"--sections", "parts", "a", "b"}).options->sections.parts);
}

TEST(CliOptions, PartsCountBesideSectionsInEitherOrder) {
    for (const auto& arguments : {std::vector<const char*>{"--parts", "--sections", "pmi"},
                                  {"--sections", "pmi", "--parts"}}) {
        auto all = arguments;
        all.insert(all.end(), {"a", "b"});
        const auto parsed = parse(all);
        ASSERT_TRUE(parsed.options) << parsed.standardError;
        EXPECT_TRUE(parsed.options->sections.parts);
        EXPECT_TRUE(parsed.options->sections.pmi);
        EXPECT_FALSE(parsed.options->sections.file);
    }
}

TEST(CliOptions, ListsTakeKnownWordsOnly) {
    for (const char* list : {"", ",", "bom,", "BOM", "all", " bom", "parts bom"}) {
        EXPECT_FALSE(cli::parseSections(list)) << list;
    }
    const auto rule = cli::parseExitOn("bom,attributes,pmi");
    ASSERT_TRUE(rule);
    EXPECT_TRUE(rule->bom && rule->attributes && rule->pmi);
    EXPECT_FALSE(rule->structure || rule->geometry || rule->placement);
}

TEST(CliOptions, CopyReportAndSwitchesAreRead) {
    const auto parsed = parse(
        {"--copy", "--report", "out.csv", "--set", "PSCompare=0", "--set", "3dreport=1", "a", "b"});
    ASSERT_TRUE(parsed.options) << parsed.standardError;
    EXPECT_TRUE(parsed.options->copy);
    EXPECT_EQ(parsed.options->report, "out.csv");
    ASSERT_EQ(parsed.options->switches.size(), 2U);
    EXPECT_EQ(parsed.options->switches[0].name, "PSCompare");
    EXPECT_FALSE(parsed.options->switches[0].on);
    EXPECT_EQ(parsed.options->switches[1].name, "3DReport");
    EXPECT_EQ(parsed.options->comparePath, "b");
    EXPECT_FALSE(parsed.options->saveSwitches);
}

TEST(CliOptions, SwitchesNeedNoFiles) {
    EXPECT_TRUE(parse({"--settings"}).options);
    EXPECT_TRUE(parse({"--set", "PSCompare=0", "--settings"}).options);
    EXPECT_TRUE(parse({"--set", "PSCompare=0", "--save"}).options);
    for (const auto& arguments : {std::vector<const char*>{"--set", "PSCompare=0"},
                                  {"--save"},
                                  {"--save", "a", "b"},
                                  {"--set", "PSCompare=0", "--save", "a"},
                                  {"--set", "PSCompare=2", "a", "b"},
                                  {"--set", "Nothing=1", "a", "b"},
                                  {"--copy", "--json", "a", "b"}}) {
        const auto parsed = parse(arguments);
        EXPECT_FALSE(parsed.options);
        EXPECT_EQ(parsed.exitCode, 2);
        EXPECT_FALSE(parsed.standardError.empty());
    }
}

TEST(CliOptions, FormsThatNobodyWritesAreNotOffered) {
    const std::string help = parse({"--help"}).standardOutput;
    EXPECT_NE(help.find("FILE.csv"), std::string::npos);
    EXPECT_EQ(help.find(".pdf"), std::string::npos);
    EXPECT_EQ(help.find(".html"), std::string::npos);
}

}  // namespace
