// How places and directions stand in records: three doubles, all or none.
#pragma once

#include "Model/Systems/ThreeVector.h"
#include "Platform/Application/FieldTable.h"

template <>
struct FieldType<ThreeVector> {
    static constexpr type_code kCode = B_DOUBLE_TYPE;
    static constexpr int32 kItems = 3;

    static status_t Add(BMessage* into, const char* name, const ThreeVector& vector) {
        const double coordinates[kItems] = {vector.x, vector.y, vector.z};
        return into->AddDoubles(name, coordinates, kItems);
    }
    static status_t Find(const BMessage& from, const char* name, int32 item, ThreeVector* vector) {
        double coordinates[kItems];
        const status_t status = from.FindDoubles(name, item, kItems, coordinates);
        if (status == B_OK) *vector = {coordinates[0], coordinates[1], coordinates[2]};
        return status;
    }
};
