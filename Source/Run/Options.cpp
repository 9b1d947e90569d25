#include "Run/Options.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <span>
#include <utility>

#include "Model/Epochs/EpochLimits.h"
#include "Resources/Runner.h"
#include "Run/CameraText.h"
#include "Run/Dialogue/Dialogue.h"
#include "Run/DocumentImport.h"
#include "Run/EditText.h"
#include "Run/OutputFile.h"
#include "Run/RunPainter.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

constexpr int32 kMaxThreads = 1024;
constexpr int32 kMinPixels = 16;
constexpr int32 kMaxPixels = 16384;
constexpr int32 kMinRate = 1;  // frames per second, as the next one
constexpr int32 kMaxRate = 120;
constexpr double kMaxInterval = 1e9;  // s

template <typename Number>
bool ParseNumber(std::string_view text, Number* number) {
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, *number);
    return read.ec == std::errc() && read.ptr == end;
}

template <typename Integer>
bool ParseInteger(std::string_view text, Integer low, Integer high, Integer* number) {
    return ParseNumber(text, number) && *number >= low && *number <= high;
}

using Value = std::string_view;

struct OptionInfo {
    std::string_view name;
    char letter;  // '\0': none
    bool takesValue;
    // False when the value is not possible.
    bool (*set)(Value value, const ProgramResources& resources, Options* options);
};

template <bool Options::*flag>
bool SetFlag(Value, const ProgramResources&, Options* options) {
    return options->*flag = true;
}

template <std::optional<std::string> Options::*path>
bool SetPath(Value value, const ProgramResources&, Options* options) {
    options->*path = std::string(value);
    return !value.empty();
}

// A picture and not standard output, which has the summary.
bool SetPicture(Value value, const ProgramResources&, Options* options) {
    options->png = std::string(value);
    return !value.empty() && value != OutputFile::kStandardOutput;
}

// "1200x900"
bool SetSize(Value value, const ProgramResources&, Options* options) {
    const std::size_t x = value.find('x');
    return x != Value::npos &&
           ParseInteger(value.substr(0, x), kMinPixels, kMaxPixels, &options->width) &&
           ParseInteger(value.substr(x + 1), kMinPixels, kMaxPixels, &options->height);
}

bool SetAxis(Value value, const ProgramResources&, Options* options) {
    constexpr Value kAxes = "xyz";
    options->axis = static_cast<int32>(kAxes.find(value)) + 1;
    return value.size() == 1 && kAxes.find(value) != Value::npos;
}

bool SetScale(Value value, const ProgramResources&, Options* options) {
    return ParseNumber(value, &options->scale) && options->scale > 0.0 &&
           std::isfinite(options->scale);
}

bool SetCamera(Value value, const ProgramResources&, Options* options) {
    options->camera = ParseCamera(value);
    return options->camera.has_value();
}

bool SetFramesPerSecond(Value value, const ProgramResources&, Options* options) {
    return ParseInteger(value, kMinRate, kMaxRate, &options->framesPerSecond);
}

bool SetPace(Value value, const ProgramResources& resources, Options* options) {
    const UnitTable::Parsed pace = resources.TimeUnits().Parse(value);
    options->pace = pace.value;
    return pace && std::isfinite(pace.value) && pace.value > 0.0;
}

bool SetSteps(Value value, const ProgramResources&, Options* options) {
    return ParseInteger<int64>(value, 0, INT64_MAX, &options->steps.emplace());
}

template <std::vector<std::string> Options::*list>
bool AddTo(Value value, const ProgramResources&, Options* options) {
    (options->*list).emplace_back(value);
    return !value.empty();
}

bool SetOnCollision(Value value, const ProgramResources&, Options* options) {
    options->onCollision = ContactFromName(value);
    return options->onCollision.has_value();
}

bool SetCheckpoint(Value value, const ProgramResources&, Options* options) {
    options->checkpoint = ParseRealTime(value);
    return options->checkpoint && *options->checkpoint > 0.0 &&
           *options->checkpoint <= kMaxInterval;
}

bool SetEvery(Value value, const ProgramResources&, Options* options) {
    return ParseInteger<int64>(value, 1, INT64_MAX, &options->every.emplace());
}

bool SetOrder(Value value, const ProgramResources&, Options* options) {
    return ParseInteger(value, kMinOrder, kMaxOrder, &options->order.emplace());
}

bool SetThreads(Value value, const ProgramResources&, Options* options) {
    return ParseInteger(value, 1, kMaxThreads, &options->threads.emplace());
}

bool SetCutoff(Value value, const ProgramResources&, Options* options) {
    double& cutoff = options->cutoff.emplace();
    return ParseNumber(value, &cutoff) && IsCutoff(cutoff);
}

bool SetDuration(Value value, const ProgramResources& resources, Options* options) {
    const UnitTable::Parsed duration = resources.TimeUnits().Parse(value);
    options->duration = duration.value;
    return duration && std::isfinite(duration.value) && duration.value != 0.0;
}

bool AddTime(Value value, const ProgramResources& resources, Options* options) {
    const UnitTable::Parsed time = resources.TimeUnits().Parse(value);
    options->at.push_back(time.value);
    return time && std::isfinite(time.value);
}

// "10 yr", or "@FILE" with one such on each line; what follows a "#" is a remark.
bool AddTimes(Value value, const ProgramResources& resources, Options* options) {
    if (value.empty() || value[0] != '@') return AddTime(value, resources, options);
    std::ifstream file{std::string(value.substr(1))};
    if (!file) return false;
    for (std::string line; std::getline(file, line);) {
        const std::string_view time = Trimmed(std::string_view(line).substr(0, line.find('#')));
        if (!time.empty() && !AddTime(time, resources, options)) return false;
    }
    return file.eof() && !options->at.empty();
}

bool SetEscapeDistance(Value value, const ProgramResources& resources, Options* options) {
    const UnitTable::Parsed distance = resources.DistanceUnits().Parse(value);
    options->escapeDistance = distance.value;
    return distance && std::isfinite(distance.value) && distance.value > 0.0;
}

constexpr OptionInfo kOptions[] = {
    {"steps", 'n', true, SetSteps},
    {"for", 'f', true, SetDuration},
    {"until", '\0', true, SetPath<&Options::until>},
    {"csv", '\0', true, SetPath<&Options::csv>},
    {"every", '\0', true, SetEvery},
    {"at", '\0', true, AddTimes},
    {"step-times", '\0', false, SetFlag<&Options::stepTimes>},
    {"events", '\0', true, SetPath<&Options::events>},
    {"escape-distance", '\0', true, SetEscapeDistance},
    {"checkpoint", '\0', true, SetCheckpoint},
    {"resume", '\0', true, SetPath<&Options::resume>},
    {"save", 'o', true, SetPath<&Options::save>},
    {"png", '\0', true, SetPicture},
    {"size", '\0', true, SetSize},
    {"axis", '\0', true, SetAxis},
    {"scale", '\0', true, SetScale},
    {"camera", '\0', true, SetCamera},
    {"frames", '\0', true, SetPath<&Options::frames>},
    {"fps", '\0', true, SetFramesPerSecond},
    {"pace", '\0', true, SetPace},
    {"overwrite", '\0', false, SetFlag<&Options::overwrites>},
    {"import", '\0', true, AddTo<&Options::imports>},
    {"import-gm", '\0', true, ReadMissingGM},
    {"export", '\0', true, SetPath<&Options::exported>},
    {"edit", '\0', true, AddTo<&Options::edits>},
    {"sweep", '\0', true, AddTo<&Options::sweeps>},
    {"sweep-file", '\0', true, SetPath<&Options::sweepFile>},
    {"body", '\0', true, AddTo<&Options::bodies>},
    {"on-collision", '\0', true, SetOnCollision},
    {"epochs", '\0', false, SetFlag<&Options::epochs>},
    {"elements", '\0', false, SetFlag<&Options::elements>},
    {"chaos", '\0', false, SetFlag<&Options::chaos>},
    {"cutoff", '\0', true, SetCutoff},
    {"order", '\0', true, SetOrder},
    {"threads", '\0', true, SetThreads},
    {"json", '\0', false, SetFlag<&Options::json>},
    {"json-lines", '\0', false, SetFlag<&Options::jsonLines>},
    {"dump", '\0', false, SetFlag<&Options::dump>},
    {"quiet", 'q', false, SetFlag<&Options::quiet>},
    {"help", '\0', false, SetFlag<&Options::help>},
    {"version", '\0', false, SetFlag<&Options::version>},
};

const OptionInfo* FindByName(std::string_view name) {
    for (const OptionInfo& option : kOptions)
        if (option.name == name) return &option;
    return nullptr;
}

const OptionInfo* FindByLetter(char letter) {
    for (const OptionInfo& option : kOptions)
        if (option.letter == letter) return &option;
    return nullptr;
}

// What is wrong with the arguments, if anything is.
using Wrong = std::optional<std::string>;

// Goes through the arguments.
class Parser {
public:
    Parser(std::span<const std::string_view> arguments, const ProgramResources& resources,
           Options* options)
        : rest_(arguments), resources_(resources), options_(options) {}

    Wrong Parse() {
        while (!rest_.empty() && !options_->help && !options_->version)
            if (Wrong wrong = TakeArgument()) return wrong;
        const bool isCsvPrinted = options_->csv == OutputFile::kStandardOutput;
        const bool isExportPrinted = options_->exported == OutputFile::kStandardOutput;
        if (options_->json + isCsvPrinted + isExportPrinted > 1) return Problem(kTextTwoOutputs);
        if (options_->help || options_->version) return std::nullopt;
        if (Wrong wrong = FindPictureProblem()) return wrong;
        if (options_->checkpoint && !options_->save) return Problem(kTextCheckpointNeedsSave);
        if (const std::string_view other = ChangesRun(); options_->resume && !other.empty())
            return Problem(kTextNotWithResume, other);
        if (const auto other = Dialogue::FindOther(*options_);
            options_->jsonLines && !other.empty())
            return Problem(kTextNotTogether, other, "--json-lines");
        if (Wrong wrong = FindSweepProblem()) return wrong;
        return FindMotionProblem();
    }

private:
    // What of the arguments says another thing of a run than how it began.
    [[nodiscard]] std::string_view ChangesRun() const {
        if (options_->document) return *options_->document;
        if (options_->steps) return "--steps";
        if (options_->duration) return "--for";
        if (options_->until) return "--until";
        if (options_->cutoff) return "--cutoff";
        if (options_->order) return "--order";
        if (options_->onCollision) return "--on-collision";
        if (!options_->imports.empty()) return "--import";
        if (!options_->edits.empty()) return "--edit";
        return options_->dump ? "--dump" : "";
    }

    [[nodiscard]] Wrong FindPictureProblem() const {
        const bool hasPictures = options_->png || options_->frames;
        if (hasPictures && !RunPainter::IsPossible())
            return Problem(kTextNoPictures, options_->png ? "--png" : "--frames");
        if (options_->camera && !hasPictures) return Problem(kTextNotWithout, "--camera", "--png");
        if (options_->frames) return std::nullopt;
        if (options_->pace) return Problem(kTextNotWithout, "--pace", "--frames");
        if (options_->overwrites) return Problem(kTextNotWithout, "--overwrite", "--frames");
        return std::nullopt;
    }

    // Of a sweep there are lines alone.
    [[nodiscard]] Wrong FindSweepProblem() const {
        if (!options_->IsSweep()) {
            if (options_->bodies.empty()) return std::nullopt;
            return Problem(kTextNotWithout, "--body", "--sweep");
        }
        const std::pair<bool, std::string_view> others[] = {
            {options_->save.has_value(), "--save"},
            {options_->exported.has_value(), "--export"},
            {!options_->imports.empty(), "--import"},
            {options_->png.has_value(), "--png"},
            {options_->frames.has_value(), "--frames"},
            {options_->resume.has_value(), "--resume"},
            {!options_->at.empty(), "--at"},
            {options_->every.has_value(), "--every"},
            {options_->stepTimes, "--step-times"},
            {options_->events.has_value(), "--events"},
            {options_->epochs, "--epochs"},
            {options_->elements, "--elements"},
            {options_->chaos, "--chaos"},
            {options_->json, "--json"},
            {options_->dump, "--dump"}};
        for (const auto& [isGiven, name] : others)
            if (isGiven) return Problem(kTextNotTogether, name, "--sweep");
        if (options_->steps && *options_->steps == 0) return Problem(kTextBadValue, "--steps", "0");
        return std::nullopt;
    }

    [[nodiscard]] Wrong FindMotionProblem() const {
        if ((!options_->at.empty() || options_->stepTimes) && !options_->csv)
            return Problem(kTextNeedsCsv, options_->stepTimes ? "--step-times" : "--at");
        if (!options_->at.empty() && options_->stepTimes)
            return Problem(kTextNotTogether, "--at", "--step-times");
        if (!options_->at.empty() && options_->every)
            return Problem(kTextNotTogether, "--at", "--every");
        if (options_->escapeDistance && !options_->events)
            return Problem(kTextNotWithout, "--escape-distance", "--events");
        return std::nullopt;
    }

    [[nodiscard]] std::string Problem(RunnerText text, std::string_view what = {},
                                      std::string_view value = {}) const {
        return FillIn(resources_.InterfaceLabel(text), {what, value});
    }

    std::string_view TakeNext() {
        const std::string_view next = rest_.front();
        rest_ = rest_.subspan(1);
        return next;
    }

    Wrong TakeArgument() {
        const std::string_view argument = TakeNext();
        if (onlyOperands_ || argument.size() < 2 || argument[0] != '-')
            return TakeOperand(argument);
        if (argument == "--") {
            onlyOperands_ = true;
            return std::nullopt;
        }
        return argument[1] == '-' ? TakeLong(argument) : TakeLetters(argument);
    }

    Wrong TakeOperand(std::string_view operand) {
        if (options_->document) return Problem(kTextSecondDocument, operand);
        options_->document = std::string(operand);
        return std::nullopt;
    }

    // --name, --name VALUE, --name=VALUE.
    Wrong TakeLong(std::string_view argument) {
        const std::size_t equals = argument.find('=');
        const std::string_view shown = argument.substr(0, equals);
        const OptionInfo* option = FindByName(shown.substr(2));
        if (option == nullptr) return Problem(kTextUnknownOption, shown);
        if (equals == std::string_view::npos) return Apply(*option, shown, std::nullopt);
        if (!option->takesValue) return Problem(kTextUnwantedValue, shown);
        return Apply(*option, shown, argument.substr(equals + 1));
    }

    // -q, -n VALUE, -nVALUE, -qn VALUE.
    Wrong TakeLetters(std::string_view argument) {
        for (std::size_t i = 1; i < argument.size(); i++) {
            const std::string shown{'-', argument[i]};
            const OptionInfo* option = FindByLetter(argument[i]);
            if (option == nullptr) return Problem(kTextUnknownOption, shown);
            std::optional<Value> value;
            if (option->takesValue && i + 1 < argument.size()) value = argument.substr(i + 1);
            if (Wrong wrong = Apply(*option, shown, value)) return wrong;
            if (option->takesValue) break;
        }
        return std::nullopt;
    }

    Wrong Apply(const OptionInfo& option, std::string_view shown, std::optional<Value> value) {
        if (option.takesValue && !value) {
            if (rest_.empty()) return Problem(kTextMissingValue, shown);
            value = TakeNext();
        }
        if (option.set(value.value_or(Value()), resources_, options_)) return std::nullopt;
        return Problem(kTextBadValue, shown, *value);
    }

    std::span<const std::string_view> rest_;
    const ProgramResources& resources_;
    Options* const options_;
    bool onlyOperands_ = false;
};

}  // namespace

std::optional<std::string> ParseOptions(const std::vector<std::string_view>& arguments,
                                        const ProgramResources& resources, Options* options) {
    return Parser(arguments, resources, options).Parse();
}
