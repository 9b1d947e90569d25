#include "RdefFixture.h"

#include "RdefParser.h"

std::vector<std::byte> RdefTest::Compile(const std::string& script) const {
    ResourceWriter writer;
    RdefParser parser(&writer);
    const bool parsed = parser.Parse(folder_.Write("test.rdef", script));
    EXPECT_TRUE(parsed) << parser.Error();
    return parsed ? writer.File() : std::vector<std::byte>();
}

BResources RdefTest::Resources(const std::string& script) const {
    BResources resources;
    EXPECT_EQ(resources.SetTo(Compile(script)), B_OK);
    return resources;
}

std::string RdefTest::Data(const std::string& value, type_code* type) const {
    const BResources resources = Resources("resource(1) " + value + ';');
    type_code found = 0;
    std::size_t size = 0;
    if (!resources.GetResourceInfo(0, &found, nullptr, nullptr, nullptr)) return "none";
    if (type != nullptr) *type = found;
    const auto* const data = static_cast<const char*>(resources.LoadResource(found, 1, &size));
    return {data, size};
}

BMessage RdefTest::Message(const std::string& value) const {
    const std::string data = Data(value);
    BMessage message;
    EXPECT_EQ(message.Unflatten(data.data(), data.size()), B_OK);
    return message;
}

std::string RdefTest::Fault(const std::string& script) const {
    ResourceWriter writer;
    RdefParser parser(&writer);
    const std::string path = folder_.Write("test.rdef", script);
    if (parser.Parse(path)) return "nothing";
    const std::string& error = parser.Error();
    return error.starts_with(path + ':') ? error.substr(path.size() + 1) : error;
}
