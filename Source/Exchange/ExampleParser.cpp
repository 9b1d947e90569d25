#include "Exchange/ExampleParser.h"

#include <algorithm>
#include <numbers>

#include "Model/Epochs/EpochLimits.h"
#include "Resources/Exchange.h"

namespace {

// Deeper than anybody needs, and shallow enough for a reader that recurses.
constexpr std::size_t kMaxGroups = 32;
constexpr int32 kMaxCount = 100'000;
constexpr double kMaxSpeeds = 1.4;  // with more, stars escape

// Where a statement may stand, as bits.
constexpr unsigned kAnywhere = 1;
constexpr unsigned kInBody = 2;
constexpr unsigned kInGroup = 4;
constexpr unsigned kInCluster = 8;
constexpr unsigned kInBelt = 16;
constexpr unsigned kInSystem = kInBody | kInGroup | kInCluster | kInBelt;

unsigned PlaceOf(ExampleSystem::Kind kind) {
    switch (kind) {
        case ExampleSystem::Kind::kBody:
            return kInBody;
        case ExampleSystem::Kind::kGroup:
            return kInGroup;
        case ExampleSystem::Kind::kCluster:
            return kInCluster;
        case ExampleSystem::Kind::kBelt:
            return kInBelt;
    }
    return 0;
}

}  // namespace

struct ExampleParser::Statement {
    std::string_view word;
    unsigned places;
    bool (*read)(ExampleParser&);
};

const ExampleParser::Statement ExampleParser::kStatements[] = {
    {"epoch", kAnywhere, [](auto& p) { return p.line_.ReadName(&p.text_.epochName); }},
    {"title", kAnywhere, [](auto& p) { return p.line_.ReadName(&p.text_.title); }},
    {"see", kAnywhere, [](auto& p) { return p.line_.ReadName(&p.text_.see.emplace_back()); }},
    {"source", kAnywhere, [](auto& p) { return p.line_.ReadName(&p.text_.source); }},
    {"time", kAnywhere, [](auto& p) { return p.ReadTime(); }},
    {"cutoff", kAnywhere, [](auto& p) { return p.ReadCutoff(); }},
    {"order", kAnywhere,
     [](auto& p) { return p.line_.ReadCount(kMinOrder, kMaxOrder, &p.text_.order); }},
    {"centred", kAnywhere, [](auto& p) { return p.ReadYesOrNo(&p.text_.centred); }},
    {"natural", kAnywhere, [](auto& p) { return p.ReadNatural(); }},
    {"picture", kAnywhere, [](auto& p) { return p.ReadPicture(); }},
    {"camera", kAnywhere, [](auto& p) { return p.ReadCamera(); }},
    {"thumbnail", kAnywhere,
     [](auto& p) { return p.line_.ReadPositive(Quantity::kTime, &p.text_.thumbnail); }},
    {"names", kAnywhere, [](auto& p) { return p.ReadYesOrNo(&p.text_.names); }},
    {"focus", kAnywhere, [](auto& p) { return p.ReadMention(&p.text_.focus); }},
    {"follow", kAnywhere, [](auto& p) { return p.ReadMention(&p.text_.followed); }},
    {"turning", kAnywhere, [](auto& p) { return p.ReadTurning(); }},
    {"show", kAnywhere, [](auto& p) { return p.ReadShow(); }},

    {"body", kAnywhere, [](auto& p) { return p.Open(Kind::kBody); }},
    {"group", kAnywhere, [](auto& p) { return p.Open(Kind::kGroup); }},
    {"cluster", kAnywhere, [](auto& p) { return p.Open(Kind::kCluster); }},
    {"belt", kAnywhere, [](auto& p) { return p.Open(Kind::kBelt); }},
    {"end", kAnywhere, [](auto& p) { return p.ReadEnd(); }},

    {"mass", kInBody | kInCluster, [](auto& p) { return p.ReadMass(); }},
    {"radius", kInBody | kInCluster | kInBelt,
     [](auto& p) { return p.line_.ReadPositive(Quantity::kDistance, &p.Current().radius); }},
    {"length", kInCluster,
     [](auto& p) { return p.line_.ReadPositive(Quantity::kDistance, &p.Current().length); }},
    {"speeds", kInCluster, [](auto& p) { return p.ReadSpeeds(); }},
    {"stars", kInCluster,
     [](auto& p) { return p.line_.ReadCount(1, kMaxCount, &p.Current().count); }},
    {"bodies", kInBelt,
     [](auto& p) { return p.line_.ReadCount(1, kMaxCount, &p.Current().count); }},
    {"outer", kInBelt,
     [](auto& p) { return p.line_.ReadPositive(Quantity::kDistance, &p.Current().outer); }},
    {"seed", kInCluster | kInBelt, [](auto& p) { return p.ReadSeed(); }},
    {"at", kInBody | kInGroup,
     [](auto& p) { return p.ReadPlace(&p.Current().position, Quantity::kDistance); }},
    {"moving", kInBody | kInGroup,
     [](auto& p) { return p.ReadPlace(&p.Current().velocity, Quantity::kSpeed); }},
    {"orbit", kInBody | kInGroup | kInBelt, [](auto& p) { return p.ReadOrbit(); }},
    {"relative", kInSystem, [](auto& p) { return p.line_.ReadName(&p.Current().relativeTo); }},
    {"color", kInSystem,
     [](auto& p) {
         return p.line_.ReadColor(&p.Current().trail) &&
                (p.Current().disc = p.Current().trail, true);
     }},
    {"trail", kInSystem,
     [](auto& p) { return p.ReadColorOrOff(&p.Current().trailOn, &p.Current().trail); }},
    {"disc", kInSystem,
     [](auto& p) { return p.ReadColorOrOff(&p.Current().discOn, &p.Current().disc); }},
};

bool ExampleParser::Parse(std::string_view text, ExampleText* result) {
    text_ = ExampleText();
    open_.clear();
    lineNumber_ = 0;
    line_.SetNaturalUnits(0.0, 0.0);
    while (!text.empty()) {
        ++lineNumber_;
        const std::size_t end = std::min(text.find('\n'), text.size());
        if (!ParseLine(text.substr(0, end))) return false;
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    CloseLeaf();
    if (!open_.empty()) {
        lineNumber_ = Current().line;
        return line_.Fail(kTextGroupOpen, {Current().name});
    }
    if (needsEpoch_ && text_.epochName.empty()) return line_.Fail(kTextEpochMissing);
    if (text_.camera && !text_.turnsWith.name.empty()) return line_.Fail(kTextCameraTurns);
    *result = std::move(text_);
    return true;
}

bool ExampleParser::ParseLine(std::string_view text) {
    if (!line_.SetTo(text)) return false;
    if (line_.AtEnd()) return true;
    const std::string word = line_.Next();
    const auto* const statement = std::ranges::find(kStatements, word, &Statement::word);
    if (statement == std::end(kStatements)) return line_.Fail(kTextStatementUnknown, {word});
    if ((statement->places & kAnywhere) == 0 &&
        (open_.empty() || (statement->places & PlaceOf(Current().kind)) == 0))
        return line_.Fail(kTextStatementMisplaced, {word});
    if (!statement->read(*this)) return false;
    return line_.AtEnd() || line_.Fail(kTextWordTooMany, {line_.Next()});
}

bool ExampleParser::ReadTime() {
    // The unit in which the time is given is that in which it is shown.
    double number = 0.0;
    if (!line_.ReadNumber(&number) || !line_.ReadUnit(Quantity::kTime, &text_.timeUnit))
        return false;
    text_.time = number * text_.timeUnit;
    return true;
}

bool ExampleParser::ReadCutoff() {
    if (!line_.ReadNumber(&text_.cutoff)) return false;
    return IsCutoff(text_.cutoff) || line_.Fail(kTextBadCutoff);
}

bool ExampleParser::ReadYesOrNo(bool* value) {
    const std::string word = line_.Next();
    *value = word == "yes";
    return *value || word == "no" || line_.Fail(kTextNeitherYesNorNo, {word});
}

bool ExampleParser::ReadNatural() {
    double mass = 0.0;
    double length = 0.0;
    if (!line_.ReadPositive(Quantity::kMass, &mass) ||
        !line_.ReadPositive(Quantity::kDistance, &length))
        return false;
    line_.SetNaturalUnits(mass, length);
    return true;
}

bool ExampleParser::ReadPicture() {
    if (!line_.ReadPositive(Quantity::kDistance, &text_.picture)) return false;
    if (line_.AtEnd()) return true;
    const std::string axis = line_.Next();
    text_.axis = axis == "x" ? 1 : axis == "y" ? 2 : axis == "z" ? 3 : 0;
    return text_.axis != 0 || line_.Fail(kTextAxisUnknown, {axis});
}

bool ExampleParser::ReadMention(ExampleMention* mention) {
    mention->line = lineNumber_;
    return line_.ReadName(&mention->name);
}

bool ExampleParser::ReadTurning() {
    return ReadMention(&text_.turnsAbout) && ReadMention(&text_.turnsWith);
}

bool ExampleParser::ReadCamera() {
    ExampleCamera camera;
    if (!ReadAngle(&camera.azimuth) || !ReadAngle(&camera.elevation)) return false;
    text_.camera = camera;
    return true;
}

bool ExampleParser::ReadShow() {
    const std::string word = line_.Next();
    ExampleUnits& units = text_.shownIn;
    if (word == "position") return line_.ReadUnit(Quantity::kDistance, &units.position);
    if (word == "speed") return line_.ReadUnit(Quantity::kSpeed, &units.speed);
    if (word == "mass") return line_.ReadUnit(Quantity::kMass, &units.mass);
    if (word == "radius") return line_.ReadUnit(Quantity::kDistance, &units.radius);
    return line_.Fail(kTextShowUnknown, {word});
}

bool ExampleParser::Open(Kind kind) {
    CloseLeaf();
    if (kind == Kind::kGroup && open_.size() == kMaxGroups) return line_.Fail(kTextGroupsInGroups);
    ExampleSystem system;
    system.kind = kind;
    system.line = lineNumber_;
    system.shownIn = text_.shownIn;
    system.trailOn = system.discOn = kind != Kind::kGroup;
    if (!line_.ReadName(&system.name)) return false;
    open_.push_back(std::move(system));
    return true;
}

bool ExampleParser::ReadEnd() {
    CloseLeaf();
    if (open_.empty()) return line_.Fail(kTextNoGroupToEnd);
    Close();
    return true;
}

void ExampleParser::Close() {
    ExampleSystem system = std::move(open_.back());
    open_.pop_back();
    (open_.empty() ? text_.systems : Current().members).push_back(std::move(system));
}

void ExampleParser::CloseLeaf() {
    if (!open_.empty() && Current().kind != Kind::kGroup) Close();
}

bool ExampleParser::ReadMass() {
    // A body may be massless: it feels the others and pulls on none.
    if (!line_.ReadQuantity(Quantity::kMass, &Current().mass)) return false;
    return Current().mass >= 0.0 || line_.Fail(kTextNegativeMass);
}

bool ExampleParser::ReadSeed() {
    int32 seed = 0;
    if (!line_.ReadCount(0, 1'000'000'000, &seed)) return false;
    Current().seed = static_cast<uint64>(seed);
    return true;
}

bool ExampleParser::ReadSpeeds() {
    if (!line_.ReadNumber(&Current().speeds)) return false;
    return (Current().speeds >= 0.0 && Current().speeds <= kMaxSpeeds) ||
           line_.Fail(kTextBadSpeeds);
}

bool ExampleParser::ReadPlace(std::optional<ThreeVector>* place, Quantity quantity) {
    if (Current().orbit) return line_.Fail(kTextOrbitSaysThis);
    ThreeVector value;
    if (!line_.ReadVector(quantity, &value)) return false;
    *place = value;
    return true;
}

bool ExampleParser::ReadOrbit() {
    if (Current().position || Current().velocity) return line_.Fail(kTextOrbitSaysItself);
    ExampleOrbit orbit;
    if (!line_.ReadName(&orbit.centre) || !ReadElements(&orbit.elements)) return false;
    Current().orbit = std::move(orbit);
    return true;
}

bool ExampleParser::ReadElements(KeplerOrbit* orbit) {
    // "longperi" and "longitude" are counted from the reference direction by way of the node.
    std::optional<double> pericentre;
    std::optional<double> anomaly;
    bool fromReference = false;
    bool longitude = false;
    while (!line_.AtEnd()) {
        const std::string word = line_.Next();
        double angle = 0.0;
        if (word == "a") {
            if (!line_.ReadPositive(Quantity::kDistance, &orbit->semiMajorAxis)) return false;
        } else if (word == "e") {
            if (!line_.ReadNumber(&orbit->eccentricity)) return false;
            if (orbit->eccentricity < 0.0 || orbit->eccentricity >= 1.0)
                return line_.Fail(kTextBadEccentricity);
        } else if (word == "i") {
            if (!ReadAngle(&orbit->inclination)) return false;
        } else if (word == "node") {
            if (!ReadAngle(&orbit->ascendingNode)) return false;
        } else if (word == "peri" || word == "longperi") {
            if (pericentre) return line_.Fail(kTextPericentreTwice);
            if (!ReadAngle(&angle)) return false;
            pericentre = angle;
            fromReference = word == "longperi";
        } else if (word == "anomaly" || word == "longitude") {
            if (anomaly) return line_.Fail(kTextPlaceTwice);
            if (!ReadAngle(&angle)) return false;
            anomaly = angle;
            longitude = word == "longitude";
        } else {
            return line_.Fail(kTextElementUnknown, {word});
        }
    }
    if (orbit->semiMajorAxis == 0.0) return line_.Fail(kTextSizeMissing);
    orbit->pericentreArgument =
        pericentre.value_or(0.0) - (fromReference ? orbit->ascendingNode : 0.0);
    orbit->meanAnomaly = anomaly.value_or(0.0);
    if (longitude) orbit->meanAnomaly -= orbit->ascendingNode + orbit->pericentreArgument;
    return true;
}

bool ExampleParser::ReadAngle(double* radians) {
    double degrees = 0.0;
    if (!line_.ReadNumber(&degrees)) return false;
    *radians = degrees * (std::numbers::pi / 180.0);
    return true;
}

bool ExampleParser::ReadColorOrOff(bool* on, rgb_color* color) {
    *on = !line_.Skip("off");
    return !*on || line_.ReadColor(color);
}
