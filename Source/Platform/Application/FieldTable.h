// The fields of a class that stands in records, as a table. Each row names a field and the member
// that it holds, and says what a reader takes when it is missing and what it refuses. The table
// writes an object, reads it and describes the format, so that none of this is said twice:
//
//     constexpr FieldTable kFields{
//         Field<&Epoch::time_>{"Time", "s", 0.0},
//         Field<&Epoch::cutoff_>{"Cutoff", "more than 0, less than 0.001", 1e-11, IsCutoff}};
//
//     return kFields.Write(*this, into);
//
// Fields are written in the order of the rows. Constants; any thread.
#pragma once

#include <concepts>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "Platform/Application/BMessage.h"
#include "Platform/Application/FieldDescription.h"

// How values of a type stand in a record: all items of a field (kItems > 1), or a single one.
// Types of higher floors have specialisations there.
template <typename Value>
struct FieldType;

// What a member becomes when its field is missing: a value, or what stands at a place by then.
// Nothing: it stays as it is.
template <typename Value>
class MissingValue {
public:
    using Constant = std::conditional_t<std::same_as<Value, std::string>, const char*, Value>;

    constexpr MissingValue() = default;
    // NOLINTNEXTLINE(google-explicit-constructor): for rows
    constexpr MissingValue(Constant value) : value_(value), isGiven_(true) {}
    // NOLINTNEXTLINE(google-explicit-constructor): for rows
    constexpr MissingValue(const Constant* place) : place_(place), isGiven_(true) {}

    [[nodiscard]] constexpr bool IsGiven() const { return isGiven_; }
    [[nodiscard]] Value Get() const { return place_ != nullptr ? *place_ : value_; }

private:
    Constant value_{};
    const Constant* place_ = nullptr;
    bool isGiven_ = false;
};

struct FieldItems {
    int32 count;
    bool isOptional;
};
// Of the rows for the items of one field the first one is listed, with the count of the last.
void DescribeField(FieldDescriptions* into, const char* name, type_code type, FieldItems items,
                   const std::string& whenMissing, const char* meaning);
// A field without a row.
void DescribeField(FieldDescriptions* into, const char* name, type_code type,
                   std::string_view count, std::string_view whenMissing, std::string_view meaning);

template <typename Class, typename Member>
Class ClassOf(Member Class::*);

// A row, for the member at the end of a path of members.
template <auto kMember, auto... kInner>
struct Field {
    using Class = decltype(ClassOf(kMember));
    using Value = std::remove_cvref_t<decltype(((std::declval<Class&>().*kMember).*....*kInner))>;
    using Type = FieldType<Value>;

    const char* name;
    const char* meaning = "";  // for the description: also the unit, and what is accepted
    MissingValue<Value> missing = {};
    bool (*accepts)(Value) = nullptr;           // a value that it refuses counts as missing
    bool (*isWritten)(const Class&) = nullptr;  // none: always
    int32 item = 0;                             // of the field
    const char* whenMissing = nullptr;          // in the description, instead of `missing`

    template <typename Object>
    static auto& Of(Object& object) {
        return ((object.*kMember).*....*kInner);  // of the object, the member, its member ...
    }

    status_t Write(const Class& object, BMessage* into) const {
        const bool isLeftOut = isWritten != nullptr && !isWritten(object);
        return isLeftOut ? B_OK : Type::Add(into, name, Of(object));
    }

    status_t Read(const BMessage& from, Class* object) const {
        if (missing.IsGiven()) Take(missing.Get(), object);
        Value found{};
        const status_t status = Type::Find(from, name, item, &found);
        return status == B_OK ? Take(std::move(found), object) : status;
    }

    status_t Take(Value value, Class* object) const {
        if (accepts != nullptr && !accepts(value)) return B_BAD_DATA;
        Of(*object) = std::move(value);
        return B_OK;
    }

    // What the member of a new object is.
    [[nodiscard]] static Value Initial() {
        if constexpr (std::default_initializable<Class>) {
            const Class object{};
            return Of(object);
        }
        return Value{};
    }

    void Describe(FieldDescriptions* into, bool isOptional) const {
        const FieldItems items{item + Type::kItems, isOptional || isWritten != nullptr};
        if constexpr (requires { DescribeValue(missing.Get()); })
            if (whenMissing == nullptr)
                return DescribeField(into, name, Type::kCode, items,
                                     DescribeValue(missing.IsGiven() ? missing.Get() : Initial()),
                                     meaning);
        DescribeField(into, name, Type::kCode, items, whenMissing == nullptr ? "" : whenMissing,
                      meaning);
    }
};

template <typename... Rows>
class FieldTable {
public:
    constexpr explicit FieldTable(Rows... rows) : rows_(rows...) {}

    // The first status that is not B_OK; later fields are not written then.
    template <typename Class>
    [[nodiscard]] status_t Write(const Class& object, BMessage* into) const {
        status_t status = B_OK;
        const auto writes = [&](const auto& row) {
            status = row.Write(object, into);
            return status == B_OK;
        };
        std::apply([&](const auto&... row) { static_cast<void>((writes(row) && ...)); }, rows_);
        return status;
    }

    // Reads every field. The status of the first one that is missing or refused, for those who need
    // them all.
    template <typename Class>
    status_t Read(const BMessage& from, Class* object) const {
        status_t first = B_OK;
        const auto read = [&](const auto& row) {
            const status_t status = row.Read(from, object);
            if (first == B_OK) first = status;
        };
        std::apply([&](const auto&... row) { (read(row), ...); }, rows_);
        return first;
    }

    // Optional: an object may have none of them.
    void Describe(FieldDescriptions* into, bool isOptional = false) const {
        std::apply([&](const auto&... row) { (row.Describe(into, isOptional), ...); }, rows_);
    }

private:
    std::tuple<Rows...> rows_;
};

// How a type of single items stands in a record.
template <typename Value, type_code kTypeCode, auto kAdd,
          status_t (BMessage::*kFind)(const char*, int32, Value*) const>
struct SingleItemType {
    static constexpr type_code kCode = kTypeCode;
    static constexpr int32 kItems = 1;

    static status_t Add(BMessage* into, const char* name, const Value& value) {
        return (into->*kAdd)(name, value);
    }
    static status_t Find(const BMessage& from, const char* name, int32 item, Value* value) {
        return (from.*kFind)(name, item, value);
    }
};

template <>
struct FieldType<bool>
    : SingleItemType<bool, B_BOOL_TYPE, &BMessage::AddBool, &BMessage::FindBool> {};
template <>
struct FieldType<int32>
    : SingleItemType<int32, B_INT32_TYPE, &BMessage::AddInt32, &BMessage::FindInt32> {};
template <>
struct FieldType<int64>
    : SingleItemType<int64, B_INT64_TYPE, &BMessage::AddInt64, &BMessage::FindInt64> {};
template <>
struct FieldType<float>
    : SingleItemType<float, B_FLOAT_TYPE, &BMessage::AddFloat, &BMessage::FindFloat> {};
template <>
struct FieldType<double>
    : SingleItemType<double, B_DOUBLE_TYPE, &BMessage::AddDouble, &BMessage::FindDouble> {};
template <>
struct FieldType<BPoint>
    : SingleItemType<BPoint, B_POINT_TYPE, &BMessage::AddPoint, &BMessage::FindPoint> {};
template <>
struct FieldType<BRect>
    : SingleItemType<BRect, B_RECT_TYPE, &BMessage::AddRect, &BMessage::FindRect> {};
template <>
struct FieldType<rgb_color>
    : SingleItemType<rgb_color, B_RGB_COLOR_TYPE, &BMessage::AddColor, &BMessage::FindColor> {};
template <>
struct FieldType<std::string>
    : SingleItemType<std::string, B_STRING_TYPE, &BMessage::AddString, &BMessage::FindString> {};

// Adds fields that make no table, one after the other until one fails.
class FieldWriter {
public:
    // Adds nothing unless that is B_OK.
    explicit FieldWriter(BMessage* into, status_t status = B_OK) : into_(into), status_(status) {}

    template <typename Value>
    FieldWriter& Add(const char* name, const Value& value, bool isWritten = true) {
        return Then([&] { return FieldType<Value>::Add(into_, name, value); }, isWritten);
    }
    // Whatever else may fail.
    template <typename Step>
    FieldWriter& Then(Step step, bool isTaken = true) {
        if (isTaken && status_ == B_OK) status_ = step();
        return *this;
    }
    // Of what failed.
    [[nodiscard]] status_t Status() const { return status_; }

private:
    BMessage* const into_;
    status_t status_;
};
