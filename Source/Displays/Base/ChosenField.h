// A row of a table of fields that are written only where they are not as in a new object: what a
// user has chosen.
#pragma once

#include "Platform/Application/FieldTable.h"

template <auto... kMember>
bool IsChosen(const typename Field<kMember...>::Class& object) {
    return !(Field<kMember...>::Of(object) == Field<kMember...>::Initial());
}

template <auto... kMember>
constexpr Field<kMember...> ChosenField(const char* name, const char* meaning,
                                        const char* whenMissing = nullptr) {
    return {.name = name,
            .meaning = meaning,
            .isWritten = IsChosen<kMember...>,
            .whenMissing = whenMissing};
}
