// What a hand that lets go asks the owner of a document for. No state, any thread.
#pragma once

#include "Displays/Hands/BodyGrip.h"
#include "Platform/Application/BMessage.h"

[[nodiscard]] BMessage MakeHandEdit(BodyGrip::Kind kind, const HandBody& body);
