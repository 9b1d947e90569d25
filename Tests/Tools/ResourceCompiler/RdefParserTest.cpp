#include "Tools/ResourceCompiler/RdefParser.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "Platform/Application/BMessage.h"
#include "Platform/Storage/BResources.h"
#include "Tests/Platform/TestFolder.h"

using namespace std::string_literals;

namespace {

std::string StringOf(const void* data, std::size_t size) {
    return data == nullptr ? "none" : std::string(static_cast<const char*>(data), size);
}

// Scripts compiled as orvek-rc compiles them.
class RdefTest : public testing::Test {
protected:
    // The resource file.
    std::vector<std::byte> Compile(const std::string& script) const {
        ResourceWriter writer;
        RdefParser parser(&writer);
        EXPECT_TRUE(parser.Parse(folder_.Write("test.rdef", script))) << parser.Error();
        return writer.File();
    }
    BResources Resources(const std::string& script) const {
        BResources resources;
        EXPECT_EQ(resources.SetTo(Compile(script)), B_OK);
        return resources;
    }
    // The data of the one resource, whose value this is; its type.
    std::string Data(const std::string& value, type_code* type = nullptr) const {
        const BResources resources = Resources("resource(1) " + value + ';');
        type_code found = 0;
        std::size_t size = 0;
        if (!resources.GetResourceInfo(0, &found, nullptr, nullptr, nullptr)) return "none";
        if (type != nullptr) *type = found;
        const void* const data = resources.LoadResource(found, 1, &size);
        return StringOf(data, size);
    }
    // What the program is told of the script's names.
    std::string Header(const std::string& script) const {
        ResourceWriter writer;
        RdefParser parser(&writer);
        EXPECT_TRUE(parser.Parse(folder_.Write("test.rdef", script))) << parser.Error();
        return parser.Names().Header("test.rdef");
    }
    // What is wrong with the script, "LINE: REASON" in the script itself.
    std::string Fault(const std::string& script) const {
        ResourceWriter writer;
        RdefParser parser(&writer);
        const std::string path = folder_.Write("test.rdef", script);
        if (parser.Parse(path)) return "nothing";
        const std::string& error = parser.Error();
        return error.starts_with(path + ':') ? error.substr(path.size() + 1) : error;
    }

    const TestFolder folder_;
};

// The sample was made by another writer: every byte is as the platform has it.
TEST_F(RdefTest, ReproducesTheSample) {
    const std::vector<std::byte> made = Compile(R"(
        enum { R_GREETING = 1, R_BYE = 7 };
        resource app_signature "application/x-vnd.example";
        resource(R_GREETING, "greeting") "hello";
        resource(R_BYE) "bye";
        resource(101, "opening") message('ARCV') {
            "class" = "Body",
            int64 "IDs" = 1, int64 "IDs" = -2, int64 "IDs" = 0x0123456789abcdef,
            double "r" = 0.0, double "r" = -1.5, double "r" = 6.02214076e23,
            bool "fixed" = true,
            "color" = rgb_color { 255, 128, 0 },
            "pos" = point { 1.5, -2.25 },
            "meta" = message('info') { "name" = "Sol" }
        };)");
    std::ifstream file(ORVEK_SAMPLE_RESOURCES, std::ios::binary);
    const std::string sample{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(StringOf(made.data(), made.size()), sample);
}

TEST_F(RdefTest, TextsHaveEscapesAndAJoiningOrder) {
    EXPECT_EQ(Data(R"("a" /* no */ "b" // no
                    "c")"),
              "abc\0"s);
    EXPECT_EQ(Data(R"("\b\f\n\r\t\v\"\\\q")"), "\b\f\n\r\t\v\"\\q\0"s);
    EXPECT_EQ(Data(R"("\101\x41\0x42\0z")"), "AAB\0z\0"s);
    EXPECT_EQ(Data(R"("// no comment /* here */")"), "// no comment /* here */\0"s);
    EXPECT_EQ(Data(R"($"00fF" $"" $"7f")"), "\x00\xff\x7f"s);
}

TEST_F(RdefTest, NumbersHaveTypesAndWidths) {
    type_code type = 0;
    EXPECT_EQ(Data("0x10", &type), "\x10\0\0\0"s);
    EXPECT_EQ(type, B_INT32_TYPE);
    EXPECT_EQ(Data("010"), "\x08\0\0\0"s);
    EXPECT_EQ(Data("0b101"), "\x05\0\0\0"s);
    EXPECT_EQ(Data("(1 + 2) * 3 - -1"), "\x0a\0\0\0"s);
    EXPECT_EQ(Data("7 / 2 % 2 | 8 ^ 9 & ~1"), "\x01\0\0\0"s);
    EXPECT_EQ(Data("B_EXCLUSIVE_LAUNCH | B_BACKGROUND_APP | 2"), "\x06\0\0\0"s);
    EXPECT_EQ(Data("'ABCD'"), "DCBA"s);
    EXPECT_EQ(Data("(int8) -2", &type), "\xfe"s);
    EXPECT_EQ(type, B_INT8_TYPE);
    EXPECT_EQ(Data("(uint16) 0x12345"), "\x45\x23"s);
    EXPECT_EQ(Data("(uint64) 0xffffffffffffffff"), std::string(8, '\xff'));
    EXPECT_EQ(Data("true", &type), "\x01"s);
    EXPECT_EQ(type, B_BOOL_TYPE);
    EXPECT_EQ(Data("-1.5", &type), "\0\0\xc0\xbf"s);
    EXPECT_EQ(type, B_FLOAT_TYPE);
    EXPECT_EQ(Data("(double) 1e0"), "\0\0\0\0\0\0\xf0\x3f"s);
    EXPECT_EQ(Data("(float) 2"), "\0\0\0\x40"s);
    EXPECT_EQ(Data("(raw) (int8) 5", &type), "\x05"s);
    EXPECT_EQ(type, B_RAW_TYPE);
}

TEST_F(RdefTest, ResourcesHaveNumberNameAndType) {
    const BResources resources = Resources(R"(
        enum { A = 5, B, C = A * 2, D, };
        resource(D, "name of d") "d";
        resource(-C) "c";
        resource() #'one ' "a";
        resource("name") (#'two ') "b";
        resource(3, "three") #0x74726565 "c";
        resource large_icon array { $"01" $"02", (int16) 3 };
        resource app_flags B_BACKGROUND_APP;
        resource file_types message { "types" = "text/plain" };
        resource array;
        resource app_version { major = 1, internal = 5, short_info = "s", long_info = "l" };)");
    std::size_t size = 0;
    EXPECT_EQ(resources.LoadString(11), "d");
    EXPECT_NE(resources.LoadResource(B_STRING_TYPE, "name of d", nullptr), nullptr);
    EXPECT_EQ(resources.LoadString(-10), "c");
    EXPECT_NE(resources.LoadResource(FourCC("one "), 1, &size), nullptr);
    EXPECT_NE(resources.LoadResource(FourCC("two "), "name", &size), nullptr);
    EXPECT_NE(resources.LoadResource(FourCC("tree"), 3, &size), nullptr);
    EXPECT_NE(resources.LoadResource(FourCC("ICON"), 101, &size), nullptr);
    EXPECT_EQ(size, 4u);
    EXPECT_NE(resources.LoadResource(FourCC("APPF"), "BEOS:APP_FLAGS", &size), nullptr);
    EXPECT_NE(resources.LoadResource(B_MESSAGE_TYPE, "BEOS:FILE_TYPES", &size), nullptr);
    EXPECT_NE(resources.LoadResource(B_RAW_TYPE, 1, &size), nullptr);
    EXPECT_EQ(size, 0u);
    const void* const version = resources.LoadResource(FourCC("APPV"), "BEOS:APP_VERSION", &size);
    ASSERT_EQ(size, 340u);
    const std::string data = StringOf(version, size);
    EXPECT_TRUE(data.starts_with("\x01\0\0\0\0\0\0\0"s));
    EXPECT_EQ(data[16], 5);
    EXPECT_STREQ(&data[20], "s");
    EXPECT_STREQ(&data[84], "l");
}

TEST_F(RdefTest, NamesOfNumbersBecomeAHeader) {
    const std::string script =
        "enum Color; enum { kBase = 40 };\n"
        "resource(kRed = kBase + 2, \"Colors\") \"red\"; resource(kRed + 1) \"green\";\n"
        "resource(kBlue = 50) #'BLUE' \"blue\";\n";
    const std::string header = Header(script);
    EXPECT_NE(header.find("enum Color : int32 {\n    kRed = 42,\n    kBlue = 50,\n};"),
              std::string::npos)
        << header;
    EXPECT_NE(Header("resource(kOne = 1) \"\";").find("enum : int32 {"), std::string::npos);

    const BResources resources = Resources(script);
    std::size_t size = 0;
    const void* const green = resources.LoadResource(B_STRING_TYPE, 43, &size);
    EXPECT_EQ(StringOf(green, size), "green\0"s);
    EXPECT_NE(resources.LoadResource(FourCC("BLUE"), 50, &size), nullptr);
    EXPECT_EQ(Fault(script + "resource(kRed = 7) \"\";"), "4: the name is there already: kRed");
}

TEST_F(RdefTest, RecordsHaveFieldsOfEveryKind) {
    const std::string data = Data(R"(message('what') {
        "text" = "t", int64 "n" = 1, int64 "n" = 2, float "f" = 3, "rect" = rect { 1, 2, 3, 4.5 },
        #'RGBB' "color" = rgb_color { 1, 2, 3, 4 }, raw "bytes" = $"00ff",
        "archive" = archive("image", 'ARCV') Thing { "a" = true },
        "nothing" = archive Empty { "" = $"" },
    })");
    BMessage message;
    ASSERT_EQ(message.Unflatten(data.data(), data.size()), B_OK);
    EXPECT_EQ(message.ToText(), R"(message 'what' {
    string "text" = "t"
    int64 "n"[0] = 1
    int64 "n"[1] = 2
    float "f" = 3
    rect "rect" = 1, 2, 3, 4.5
    color32 "color" = 1, 2, 3, 4
    raw "bytes" = $"00ff"
    message "archive" = 'ARCV' {
        bool "a" = true
        string "class" = "Thing"
        string "add_on" = "image"
    }
    message "nothing" = 0x00000000 {
        string "class" = "Empty"
    }
}
)");
}

TEST_F(RdefTest, FilesAreRelativeToTheScriptThatNamesThem) {
    folder_.Write("sub/inner.rdef", "#include \"deeper.rdef\"\nresource(2) import \"data\";");
    folder_.Write("sub/deeper.rdef", "enum { DEEP = 4 };");
    folder_.Write("sub/data", "in sub\0!"s);
    folder_.Write("data", "beside");
    const BResources resources = Resources(R"(
        #include "sub/inner.rdef"
        resource(DEEP) array { import "data", array import "sub/data" };)");
    std::size_t size = 0;
    const void* const inner = resources.LoadResource(B_RAW_TYPE, 2, &size);
    EXPECT_EQ(StringOf(inner, size), "in sub\0!"s);
    const void* const both = resources.LoadResource(B_RAW_TYPE, 4, &size);
    EXPECT_EQ(StringOf(both, size), "besidein sub\0!"s);
}

TEST_F(RdefTest, FaultsTellFileLineAndReason) {
    const std::pair<const char*, const char*> faults[] = {
        {"\n\nnonsense;", "3: a statement begins with resource or enum"},
        {"resource(1) \"a\"\n\nresource(2) \"b\";", "3: missing: ;"},
        {"resource(1) \"a", "1: a text is not closed on its line"},
        {"resource(1) \"a\";\nresource(1) \"b\";",
         "2: the resource of line 2 with the number 1 is there already"},
        {"resource(1) 1 / 0;", "1: a division that has no result"},
        {"resource(1) 08;", "1: not a number: 08"},
        {"resource(1) 0x100000000;", "1: the value cannot be stored without another type"},
        {"resource(0x100000000) 1;", "1: a resource's number has 32 bits"},
        {"resource(1) 'abc';", "1: a code has four characters"},
        {"resource(1) \"\\777\";", "1: more than a byte holds"},
        {"resource(1) (int32) 1.5;", "1: the value cannot become int32"},
        {"resource(1) rgb_color { 1, 2, 256 };", "1: a colour is 0 to 255"},
        {"resource(1) message { int32 \"a\" = \"1\" };", "1: field \"a\" cannot have this value"},
        {"resource(1) message { \"a\" = 1,\n\"a\" = true };",
         "2: field \"a\" is empty or has items of another type"},
        {"resource(1) archive Thing { bool \"class\" = true };",
         "1: a field of an archive may not be called class or add_on"},
    };
    for (const auto& [script, fault] : faults)
        EXPECT_EQ(Fault(script), fault);
    // As deep as anybody likes, in every way in which a value can stand in a value.
    constexpr int kLevels = 100'000;
    for (const std::string level :
         {"(", "-", "(int32)", "array {", "message { \"a\" =", "app_flags "}) {
        std::string script = "\nresource(1) ";
        for (int i = 0; i < kLevels; i++)
            script += level;
        EXPECT_EQ(Fault(script), "2: values are nested too deeply") << level;
    }
    EXPECT_EQ(Fault("#include \"none\""), "1: cannot read \"" + folder_.Path("none") + '"');
}

TEST_F(RdefTest, FaultsInIncludedFilesAndCircles) {
    const std::string inner = folder_.Write("inner.rdef", "\nresource(1) ?;");
    EXPECT_EQ(Fault("#include \"inner.rdef\""), inner + ":2: a stray character: ?");
    const std::string fault = Fault("#include \"test.rdef\"");
    EXPECT_NE(fault.find("too many files include each other"), std::string::npos) << fault;
    ResourceWriter writer;
    RdefParser parser(&writer);
    EXPECT_FALSE(parser.Parse(folder_.Path()));
    EXPECT_EQ(parser.Error(), "cannot read \"" + folder_.Path() + '"');
}

}  // namespace
