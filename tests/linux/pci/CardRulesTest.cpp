#include "linux/pci/CardRules.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "linux/pci/CardRuleFiles.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using namespace pci;

CardRules parsed(const std::string& text) {
    CardRules rules;
    parseCardRules(text, "cards.conf", rules);
    return rules;
}

TEST(CardRulesTest, ReadsEveryPartOfALine) {
    const CardRules rules = parsed(
        "# a comment\n"
        "\n"
        "1af4:1110 range0=2 simulated \"VornMX-B\"\n"
        "\tABCD:0001\tabcd:0002 range1=0 range0=5 \"A # in a name\" # and a comment\r\n"
        "abcd:0003 \"The last line has no end\"");
    const std::vector<CardRule> expected{
        {{0x1AF4, 0x1110}, std::nullopt, {2, std::nullopt}, true, "VornMX-B"},
        {{0xABCD, 1}, Identifiers{0xABCD, 2}, {5, 0}, false, "A # in a name"},
        {{0xABCD, 3}, std::nullopt, {}, false, "The last line has no end"}};
    EXPECT_EQ(rules.rules, expected);
    EXPECT_EQ(rules.complaints, std::vector<std::string>{});
}

TEST(CardRulesTest, NamesEachBadLineAndKeepsTheRest) {
    const std::string identifiers =
        "should be two identifiers of four hexadecimal digits, such as abcd:0123.";
    const std::string range = "should be range0= or range1= and a number from 0 to 5.";
    const std::vector<std::pair<std::string, std::string>> lines{
        {"VVVV:DDDD \"N\"", "\"VVVV:DDDD\" " + identifiers},
        {"1af4 \"N\"", "\"1af4\" " + identifiers},
        {"1af4:1110 1af4:110 \"N\"", "\"1af4:110\" " + identifiers},
        {"1af4:1110 range0=6 \"N\"", "\"range0=6\" " + range},
        {"1af4:1110 range2=0 \"N\"", "\"range2=0\" " + range},
        {"1af4:1110 range0=1 range0=2 \"N\"", "a range is named twice."},
        {"1af4:1110 range1=0 range0=0 \"N\"", "both ranges name the same base address register."},
        {"1af4:1110 simulated simulated \"N\"", "\"simulated\" is given twice."},
        {"1af4:1110 simulated 1af4:1100 \"N\"", "\"1af4:1100\" is not known here."},
        {"1af4:1110 \x1B[2J \"N\"", "\"\\x1B[2J\" is not known here."},
        {"1af4:1110", "the card's name is missing, in quotation marks at the end of the line."},
        {"1af4:1110 \"N", "the quotation mark after the name is missing."},
        {"1af4:1110 \"N\" range0=1", "the name should be last in the line."},
        {"1af4:1110 \"\"", "the name should be 1 to 63 printable ASCII characters."},
        {"1af4:1110 \"N\xC3\xBC\"", "the name should be 1 to 63 printable ASCII characters."},
        {"1af4:1110 \"" + std::string(64, 'N') + "\"",
         "the name should be 1 to 63 printable ASCII characters."},
        {"1af4:1110 \"N\"" + std::string(500, ' '), "the line is longer than 500 characters."},
    };
    std::string text;
    std::vector<std::string> expected;
    for (const auto& [line, complaint] : lines) {
        text += line + "\n";
        expected.push_back("cards.conf:" + std::to_string(expected.size() + 1) + ": " + complaint);
    }
    const CardRules rules = parsed(text + "1af4:1111 \"Good\"\n");
    const auto many = parsed(text + text + text + text + text + text + text).complaints;
    EXPECT_EQ(many.size(), 101u);
    EXPECT_EQ(many.back(), "Lines and files that were passed over besides these: 19.");
    EXPECT_EQ(rules.complaints, expected);
    ASSERT_EQ(rules.rules.size(), 1u);
    EXPECT_EQ(rules.rules[0].name, "Good");
}

TEST(CardRulesTest, PrefersTheLineForTheSubsystemAndCountsNoneThatContradict) {
    CardRules rules;
    parseCardRules(
        "1af4:1110 \"any\"\n1af4:1110 1af4:0001 simulated \"one\"\n1af4:1110 1af4:0003 \"real\"\n"
        "1af4:1110 range0=1 \"any, later\"\n1af4:1112 simulated \"guest's leftovers\"\n",
        "10-old.conf", rules);
    parseCardRules(
        "1AF4:1110 1af4:0001 simulated \"one, later\"\n1af4:1110 1af4:0003 simulated \"guest's\"\n"
        "1af4:1112 \"real\"\n1af4:1112 simulated \"guest's again\"\n",
        "20-mine.conf", rules);
    const auto name = [&](Identifiers device, Identifiers subsystem) {
        const CardRule* const rule = rules.find(device, subsystem);
        return rule == nullptr ? "none" : rule->name;
    };
    EXPECT_EQ(name({0x1AF4, 0x1110}, {0x1AF4, 1}), "one");
    EXPECT_EQ(name({0x1AF4, 0x1110}, {0x1AF4, 2}), "any");
    EXPECT_EQ(name({0x1AF4, 0x1110}, {0x1AF4, 3}), "none") << "nor what a less specific line says";
    EXPECT_EQ(name({0x1AF4, 0x1111}, {0x1AF4, 1}), "none");
    EXPECT_EQ(name({0x1AF4, 0x1112}, {0x1AF4, 1}), "none");
    EXPECT_EQ(rules.rules.size(), 2U);
    const std::string already = ": these identifiers are already named in 10-old.conf, line ";
    const std::string contradiction =
        ", but only some of the lines that name them say \"simulated\", so none of those lines counts.";
    const std::vector<std::string> expected{
        "10-old.conf:4" + already + "1.", "20-mine.conf:1" + already + "2.",
        "20-mine.conf:2" + already + "3" + contradiction, "20-mine.conf:3" + already + "5" + contradiction,
        "20-mine.conf:4" + already + "5" + contradiction};
    EXPECT_EQ(rules.complaints, expected);
}

class CardRuleFilesTest : public testing::Test {
  protected:
    void write(const std::string& name, const std::string& text, int mode = 0644) const {
        std::ofstream(path(name)) << text;
        std::filesystem::permissions(path(name), static_cast<std::filesystem::perms>(mode));
    }
    std::filesystem::path path(const std::string& name) const { return directory_.path() / name; }
    CardRules read() const { return readCardRules(directory_.path(), getuid()); }

    TemporaryDirectory directory_;
};

TEST_F(CardRuleFilesTest, AreReadInTheOrderOfTheirNames) {
    // The installed example names no card.
    std::ostringstream example;
    ASSERT_TRUE(example << std::ifstream(EXAMPLE_RULES).rdbuf());
    write("15-example.conf", example.str());
    write("20-b.conf", "1af4:0002 \"b\"\n");
    write("10-a.conf", "1af4:0001 \"a\"\nbad\n");
    write("notes.txt", "bad\n");
    write(".hidden.conf", "bad\n");
    const CardRules rules = read();
    ASSERT_EQ(rules.rules.size(), 2u);
    EXPECT_EQ(rules.rules[0].name, "a");
    EXPECT_EQ(rules.rules[1].name, "b");
    ASSERT_EQ(rules.complaints.size(), 1u);
    EXPECT_TRUE(rules.complaints[0].starts_with(path("10-a.conf").string() + ":2: ")) << rules.complaints[0];
    EXPECT_TRUE(readCardRules(path("missing"), getuid()).complaints.empty());
    for (int number = 100; number < 200; ++number) {
        write("30-" + std::to_string(number) + ".conf", "1af4:0003 \"c\"\n");
    }
    const CardRules tooMany = read();
    EXPECT_EQ(tooMany.rules.size(), 3u);
    EXPECT_EQ(tooMany.complaints[0], directory_.path().string() +
                                         ": has more than 100 files; those after 30-196.conf were not read.");
}

TEST_F(CardRuleFilesTest, AreIgnoredIfOthersCanChangeThem) {
    const std::string untrusted = ": was not read, because users other than the administrator can change it.";
    const std::string rule = "1af4:0001 \"card\"\n";
    write("1-group.conf", rule, 0664);
    write("2-everyone.conf", rule, 0646);
    write("elsewhere", rule);
    std::filesystem::create_symlink(path("elsewhere"), path("3-link.conf"));
    std::filesystem::create_directory(path("4-folder.conf"));
    write("5-long.conf", rule + std::string(65536, '#'));
    const CardRules rules = read();
    EXPECT_TRUE(rules.rules.empty());
    const std::vector<std::string> expected{path("1-group.conf").string() + untrusted,
                                            path("2-everyone.conf").string() + untrusted,
                                            path("3-link.conf").string() + ": is not an ordinary file.",
                                            path("4-folder.conf").string() + ": is not an ordinary file.",
                                            path("5-long.conf").string() + ": is longer than 65536 bytes."};
    EXPECT_EQ(rules.complaints, expected);

    // Another owner, and a folder into which others can put files.
    EXPECT_EQ(readCardRules(directory_.path(), getuid() + 1).complaints,
              std::vector{directory_.path().string() + untrusted});
    std::filesystem::permissions(directory_.path(), std::filesystem::perms(0777));
    EXPECT_EQ(read().complaints, std::vector{directory_.path().string() + untrusted});
}

}  // namespace
